#include "ui/mainwindow/GridItemAccessible.h"

#include "ui/mainwindow/GridView.h"

namespace mirvel::ui {

GridItemAccessible::GridItemAccessible(GridView* view, int row) : m_view(view), m_row(row) {}

GridItemAccessible::~GridItemAccessible() = default;

bool GridItemAccessible::isValid() const {
  return m_view && m_view->model() && m_row < m_view->model()->rowCount();
}

QModelIndex GridItemAccessible::index() const {
  return isValid() ? m_view->model()->index(m_row, 0) : QModelIndex();
}

QWindow* GridItemAccessible::window() const {
  return m_view ? m_view->window()->windowHandle() : nullptr;
}

QAccessibleInterface* GridItemAccessible::parent() const {
  return QAccessible::queryAccessibleInterface(m_view);
}

QString GridItemAccessible::text(QAccessible::Text kind) const {
  switch (kind) {
    case QAccessible::Name:
      return index().data(Qt::AccessibleTextRole).toString();
    case QAccessible::Description:
      return index().data(Qt::AccessibleDescriptionRole).toString();
    default:
      return {};
  }
}

QRect GridItemAccessible::rect() const {
  if (!isValid()) return {};
  const QRect inViewport = m_view->visualRect(index());
  return {m_view->viewport()->mapToGlobal(inViewport.topLeft()), inViewport.size()};
}

QAccessible::State GridItemAccessible::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  state.selectable = true;
  state.focusable = true;
  state.selected = m_view->selectionModel()->isSelected(index());
  state.focused = m_view->hasFocus() && m_view->currentIndex() == index();
  state.offscreen = !m_view->viewport()->rect().intersects(m_view->visualRect(index()));
  return state;
}

void* GridItemAccessible::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList GridItemAccessible::actionNames() const {
  return {pressAction(), setFocusAction()};
}

void GridItemAccessible::doAction(const QString& name) {
  if (!isValid()) return;
  if (name == setFocusAction()) {
    m_view->setFocus();
    m_view->selectionModel()->setCurrentIndex(index(), QItemSelectionModel::NoUpdate);
  } else if (name == pressAction()) {
    m_view->click(m_row);
  }
}

}  // namespace mirvel::ui
