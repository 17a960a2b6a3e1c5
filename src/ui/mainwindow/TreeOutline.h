#pragma once

#include <QTreeView>
#include <functional>

namespace mirvel::ui {

class TreeRowDelegate;

/// The outline of tree mode: groups that expand and collapse, with a button that shows the number of their jobs.
class TreeOutline final : public QTreeView {
 public:
  explicit TreeOutline(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;

  /// The text shown instead of rows while there are none; nothing is shown if it is empty.
  std::function<QString()> emptyLabel;
  /// Whether the user may select this row now.
  std::function<bool(const QModelIndex&)> maySelect;
  /// Called when a row is to be selected without user input, for example by an assistive program. Returns whether it
  /// may be.
  std::function<bool(const QModelIndex&)> accessibilityPress;
  /// Called when the user has selected a row.
  std::function<void(const QModelIndex&)> selectionDidChange;
  /// Called when the user has clicked the button of a group.
  std::function<void(const QModelIndex&)> countWasClicked;

  /// Selects this row alone, or none with an invalid index, without asking `maySelect` or calling `selectionDidChange`.
  void mark(const QModelIndex& index);
  /// The rectangle of a group's button in the viewport; empty for a job.
  QRect countButton(const QModelIndex& index) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;

 private:
  bool mayMark(const QModelIndex& index);
  bool pressButton(const QMouseEvent& event);
  void setPressed(const QModelIndex& group);

  TreeRowDelegate* m_delegate;
  QPersistentModelIndex m_pressed;  ///< the group whose button is held down
  bool m_isMarking = false;
  bool m_isHandlingInput = false;
};

}  // namespace mirvel::ui
