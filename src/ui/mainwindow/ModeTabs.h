#pragma once

#include <QStackedWidget>
#include <array>

#include "core/session/Mode.h"

namespace mirvel {
struct WindowContext;
}

namespace mirvel::ui {

class IconLoader;
class ListModeView;

/// The views of the four modes, stacked. Each view is created when it is first shown.
class ModeTabs final : public QStackedWidget {
 public:
  /// `context` and `icons` must outlive the widget.
  ModeTabs(const WindowContext& context, IconLoader& icons, QWidget* parent = nullptr);

  void show(Mode mode);
  /// Creates the view of the mode if necessary.
  QWidget& view(Mode mode);
  ListModeView& listMode();

 private:
  QWidget* makeView(Mode mode);

  const WindowContext& m_context;
  IconLoader& m_icons;
  std::array<QWidget*, 4> m_views{};
};

}  // namespace mirvel::ui
