#pragma once

#include <QAccessibleInterface>
#include <QPointer>

namespace mirvel::ui {

class GridView;

/// One item of the grid for assistive programs: whatever stands in its row.
class GridItemAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  GridItemAccessible(GridView* view, int row);
  ~GridItemAccessible() override;

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
  /// A press does what a click does.
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QModelIndex index() const;

  QPointer<GridView> m_view;
  int m_row;
};

}  // namespace mirvel::ui
