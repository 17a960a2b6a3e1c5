#pragma once

#include <QStackedWidget>
#include <array>

#include "core/app/Program.h"
#include "ui/support/IconLoader.h"

namespace mirvel::ui {

class ListModeView;

/// The views of the catalogue, one tab for each mode. A view is made when it is first shown.
class ModeTabs final : public QStackedWidget {
 public:
  ModeTabs(Program& program, IconLoader& icons, QWidget* parent = nullptr);

  void show(Mode mode);
  /// The view of a mode.
  QWidget& view(Mode mode);
  ListModeView& listMode();

 private:
  QWidget* makeView(Mode mode);

  Program& m_program;
  IconLoader& m_icons;
  std::array<QWidget*, 4> m_views{};
};

}  // namespace mirvel::ui
