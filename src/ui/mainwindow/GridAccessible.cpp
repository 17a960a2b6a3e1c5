#include "ui/mainwindow/GridView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace mirvel::ui {

namespace {

/// The accessible interface of the item in one row of the grid.
class GridItemAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  GridItemAccessible(GridView* view, int row);

  int row() const { return m_row; }

  bool isValid() const override;
  QObject* object() const override { return nullptr; }
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  /// The press action has the effect of a click on the item.
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QModelIndex index() const;

  QPointer<GridView> m_view;
  int m_row;
};

GridItemAccessible::GridItemAccessible(GridView* view, int row) : m_view(view), m_row(row) {}

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

/// The accessible interface of a grid: a list. The interfaces of its items are created on demand.
class GridAccessible final : public QAccessibleWidget {
 public:
  explicit GridAccessible(GridView* view);
  ~GridAccessible() override;

  int childCount() const override;
  QAccessibleInterface* child(int row) const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;

 private:
  QAccessibleInterface* at(const QModelIndex& index) const;

  QPointer<GridView> m_view;
  mutable QHash<int, QAccessible::Id> m_items;  // by row; registered with QAccessible, which owns the interfaces
};

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
  auto* item = new GridItemAccessible(m_view, row);  // owned by QAccessible's registry
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

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
  auto* view = dynamic_cast<GridView*>(object);
  return view ? new GridAccessible(view) : nullptr;
}

}  // namespace

void installGridAccessible() {
  QAccessible::installFactory(makeAccessible);
}

}  // namespace mirvel::ui
