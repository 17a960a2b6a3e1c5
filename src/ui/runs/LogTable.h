#pragma once

#include <QAbstractTableModel>
#include <QTreeView>
#include <functional>
#include <vector>

#include "core/runs/LogRows.h"

namespace mirvel {
class LogViewController;
}

namespace mirvel::ui {

/// Presents the rows of the log to the table. Texts are bounded, and made only for the cells that are shown.
class LogTableModel final : public QAbstractTableModel {
 public:
  /// Both must outlive the model.
  LogTableModel(const LogViewController& log, const Localize& localize) : m_log(log), m_localize(localize) {}

  /// Must be called after each change of the rows.
  void rowsDidChange(const LogChange& change);

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_count; }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 2; }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const LogViewController& m_log;
  const Localize& m_localize;
  int m_count = 0;
};

/// The table of the log sheet, with a label while it is empty.
class LogTable final : public QTreeView {
 public:
  explicit LogTable(QWidget* parent = nullptr);

  /// The text shown instead of rows while there are none; nothing is shown if it is empty.
  std::function<QString()> emptyLabel;

  /// The indexes of the selected rows, in ascending order.
  std::vector<std::size_t> selectedRows() const;
  /// Selects the rows for which the function returns true, and no others. Doesn't scroll.
  void select(const std::function<bool(std::size_t row)>& isSelected);
  /// Whether the table is scrolled to its end. Not if all rows are visible.
  bool isAtEnd() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
};

}  // namespace mirvel::ui
