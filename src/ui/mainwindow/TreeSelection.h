#pragma once

#include <QItemSelectionModel>
#include <functional>

namespace mirvel::ui {

/// A selection of rows below groups. It moves to another row only if it may; a group is never marked, and to go to one
/// leaves the mark where it is.
class TreeSelection final : public QItemSelectionModel {
 public:
  using MayChange = std::function<bool(const QModelIndex&)>;

  /// `mayChange` is asked with the row that is to be marked; with an invalid index: whether none may be.
  TreeSelection(QAbstractItemModel* model, MayChange mayChange, QObject* parent)
      : QItemSelectionModel(model, parent), m_mayChange(std::move(mayChange)) {}

  using QItemSelectionModel::select;

  void setCurrentIndex(const QModelIndex& index, SelectionFlags command) override {
    if (index.isValid() && !index.parent().isValid()) {
      QItemSelectionModel::setCurrentIndex(index, NoUpdate);
    } else if (index == currentIndex() || isSelected(index) || m_mayChange(index)) {
      QItemSelectionModel::setCurrentIndex(index, command);
    }
  }
  void select(const QItemSelection& selection, SelectionFlags command) override {
    if (command == NoUpdate || selection == this->selection()) return;
    const QModelIndex index = selection.indexes().value(0);
    if (m_isResetting || m_mayChange(index)) QItemSelectionModel::select(selection, command | Clear);
  }
  void reset() override {
    m_isResetting = true;
    QItemSelectionModel::reset();
    m_isResetting = false;
  }

 private:
  MayChange m_mayChange;
  bool m_isResetting = false;
};

}  // namespace mirvel::ui
