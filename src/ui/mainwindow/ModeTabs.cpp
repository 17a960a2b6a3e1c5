#include "ui/mainwindow/ModeTabs.h"

#include "ui/mainwindow/GridModeView.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/TimelineModeView.h"
#include "ui/mainwindow/TreeModeView.h"

namespace mirvel::ui {

ModeTabs::ModeTabs(const WindowContext& context, IconLoader& icons, QWidget* parent)
    : QStackedWidget(parent), m_context(context), m_icons(icons) {}

void ModeTabs::show(Mode mode) {
  QWidget& shown = view(mode);
  setCurrentWidget(&shown);
  setFocusProxy(&shown);
}

QWidget& ModeTabs::view(Mode mode) {
  QWidget*& view = m_views.at(static_cast<std::size_t>(mode));
  if (!view) {  // created on first use: a view of ten thousand jobs takes time to fill
    view = makeView(mode);
    addWidget(view);
  }
  return *view;
}

QWidget* ModeTabs::makeView(Mode mode) {
  switch (mode) {
    case Mode::Grid:
      return new GridModeView(m_context, m_icons);
    case Mode::Tree:
      return new TreeModeView(m_context, m_icons);
    case Mode::Timeline:
      return new TimelineModeView(m_context);
    case Mode::List:
      break;
  }
  return new ListModeView(m_context, m_icons);
}

ListModeView& ModeTabs::listMode() {
  return static_cast<ListModeView&>(view(Mode::List));
}

}  // namespace mirvel::ui
