#pragma once

#include <QStackedWidget>
#include <array>

#include "core/app/Program.h"
#include "ui/support/IconLoader.h"

namespace mirvel::ui {

class ListModeView;

/// The views of the four modes, stacked. Each view is created when it is first shown.
class ModeTabs final : public QStackedWidget {
 public:
  ModeTabs(Program& program, IconLoader& icons, QWidget* parent = nullptr);

  void show(Mode mode);
  /// Creates the view of the mode if necessary.
  QWidget& view(Mode mode);
  ListModeView& listMode();

 private:
  QWidget* makeView(Mode mode);

  Program& m_program;
  IconLoader& m_icons;
  std::array<QWidget*, 4> m_views{};
};

}  // namespace mirvel::ui
