#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

#include "core/editor/GridTable.h"

namespace mirvel::ui {

/// Shows and edits the text of a row of a table, which hears of each keystroke. Given up by Escape, the row has its old
/// text again.
class RowTextDelegate final : public QStyledItemDelegate {
 public:
  /// The table outlives the delegate; the index of a row is that of the table's.
  RowTextDelegate(GridTable::Table& table, QObject* parent);

  QString displayText(const QVariant& value, const QLocale& locale) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  void edit(const QString& text) const;

  GridTable::Table& m_table;
  mutable QPersistentModelIndex m_edited;
};

}  // namespace mirvel::ui
