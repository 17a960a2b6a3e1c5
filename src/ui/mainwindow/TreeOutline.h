#pragma once

#include <QTreeView>
#include <functional>

namespace mirvel::ui {

class TreeRowDelegate;

/// The outline of tree mode: groups that open and close, also by a button with their count, and rows below them.
class TreeOutline final : public QTreeView {
 public:
  explicit TreeOutline(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;

  /// What stands behind an outline without rows; an empty text: nothing.
  std::function<QString()> emptyLabel;
  /// Whether the user may mark this row now.
  std::function<bool(const QModelIndex&)> maySelect;
  /// Something that is no event of the user, such as an assistive program, wants a row to be marked. Gives whether it
  /// is.
  std::function<bool(const QModelIndex&)> accessibilityPress;
  /// The user marked a row.
  std::function<void(const QModelIndex&)> selectionDidChange;
  /// The user clicked the button of a group.
  std::function<void(const QModelIndex&)> countWasClicked;

  /// Marks just this row, or none with an invalid index, whatever `maySelect` says and without `selectionDidChange`.
  void mark(const QModelIndex& index);
  /// Where the button of a group is in the viewport; empty for a job.
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
  QPersistentModelIndex m_pressed;  ///< the group whose button is held
  bool m_isMarking = false;
  bool m_isHandlingInput = false;
};

}  // namespace mirvel::ui
