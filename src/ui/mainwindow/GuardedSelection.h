#pragma once

#include <QItemSelectionModel>
#include <functional>

namespace mirvel::ui {

/// A selection that moves to another row only if it may.
class GuardedSelection final : public QItemSelectionModel {
 public:
  GuardedSelection(QAbstractItemModel* model, std::function<bool()> mayChange, QObject* parent)
      : QItemSelectionModel(model, parent), m_mayChange(std::move(mayChange)) {}

  using QItemSelectionModel::select;

  void setCurrentIndex(const QModelIndex& index, SelectionFlags command) override {
    if (index.row() == currentIndex().row() || m_mayChange()) QItemSelectionModel::setCurrentIndex(index, command);
  }
  void select(const QItemSelection& selection, SelectionFlags command) override {
    // An empty one is how a model that was reset clears the marks.
    const bool isHarmless = selection.isEmpty() || selection == this->selection();
    if (isHarmless || m_mayChange()) QItemSelectionModel::select(selection, command);
  }

 private:
  std::function<bool()> m_mayChange;
};

}  // namespace mirvel::ui
