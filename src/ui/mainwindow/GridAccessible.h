#pragma once

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace mirvel::ui {

class GridView;

/// The grid for assistive programs: a list whose entries are the items of the view. They are made as they are asked
/// for.
class GridAccessible final : public QAccessibleWidget {
 public:
  /// From now on every grid view is told of like this. To call it again does nothing.
  static void install();

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
  mutable QHash<int, QAccessible::Id> m_items;  // by row
};

}  // namespace mirvel::ui
