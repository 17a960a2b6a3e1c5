#include "ui/mainwindow/ModeTabs.h"

#include "ui/mainwindow/ListModeView.h"

namespace mirvel::ui {

ModeTabs::ModeTabs(Program& program, IconLoader& icons, QWidget* parent)
    : QStackedWidget(parent), m_program(program), m_icons(icons) {}

void ModeTabs::show(Mode mode) {
  QWidget& shown = view(mode);
  setCurrentWidget(&shown);
  setFocusProxy(&shown);
}

QWidget& ModeTabs::view(Mode mode) {
  QWidget*& view = m_views.at(static_cast<std::size_t>(mode));
  if (!view) {
    view = makeView(mode);
    addWidget(view);
  }
  return *view;
}

QWidget* ModeTabs::makeView(Mode mode) {
  switch (mode) {
    case Mode::grid:
    case Mode::tree:
    case Mode::timeline:
    case Mode::list:
      break;
  }
  return new ListModeView(m_program, m_icons);
}

ListModeView& ModeTabs::listMode() {
  return static_cast<ListModeView&>(view(Mode::list));
}

}  // namespace mirvel::ui
