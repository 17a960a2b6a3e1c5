#include "ui/mainwindow/GridAccessible.h"

#include "ui/mainwindow/GridItemAccessible.h"
#include "ui/mainwindow/GridView.h"

namespace mirvel::ui {

namespace {

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
  auto* view = dynamic_cast<GridView*>(object);
  return view ? new GridAccessible(view) : nullptr;
}

}  // namespace

void GridAccessible::install() {
  QAccessible::installFactory(makeAccessible);
}

GridAccessible::GridAccessible(GridView* view) : QAccessibleWidget(view, QAccessible::List), m_view(view) {}

GridAccessible::~GridAccessible() {
  for (const QAccessible::Id id : std::as_const(m_items)) QAccessible::deleteAccessibleInterface(id);
}

int GridAccessible::childCount() const {
  return m_view && m_view->model() ? m_view->model()->rowCount() : 0;
}

QAccessibleInterface* GridAccessible::child(int row) const {
  if (row < 0 || row >= childCount()) return nullptr;
  const auto known = m_items.constFind(row);
  if (known != m_items.constEnd()) return QAccessible::accessibleInterface(*known);
  auto* item = new GridItemAccessible(m_view, row);  // the registry of all owns it
  m_items.insert(row, QAccessible::registerAccessibleInterface(item));
  return item;
}

int GridAccessible::indexOfChild(const QAccessibleInterface* child) const {
  const auto* item = dynamic_cast<const GridItemAccessible*>(child);
  return item ? item->row() : -1;
}

QAccessibleInterface* GridAccessible::childAt(int x, int y) const {
  return m_view ? at(m_view->indexAt(m_view->viewport()->mapFromGlobal(QPoint(x, y)))) : nullptr;
}

QAccessibleInterface* GridAccessible::focusChild() const {
  return m_view && m_view->hasFocus() ? at(m_view->currentIndex()) : nullptr;
}

QAccessibleInterface* GridAccessible::at(const QModelIndex& index) const {
  return index.isValid() ? child(index.row()) : nullptr;
}

}  // namespace mirvel::ui
