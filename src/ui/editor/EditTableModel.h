#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>

#include "core/editor/EditTable.h"

namespace mirvel::ui {

/// Presents the rows of a table as an item model. The table is changed through the model only.
class EditTableModel final : public QAbstractTableModel {
 public:
  /// `name` is the accessible name of columns without a title. Table and collator outlive the model.
  EditTableModel(EditTable& table, const Collator& collator, QString name, QObject* parent);

  const EditTable& table() const { return m_table; }
  /// Shows other rows. Reports only the rows that differ as changed, so that the selection and an open cell editor are
  /// kept.
  void fill(const std::vector<TableRow>& rows);
  int add(const std::string& text);
  void removeAt(int row);
  /// If false, no cell can be changed; rows can still be removed.
  void setEditable(bool isEditable) { m_isEditable = isEditable; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  void repaintAll();

  EditTable& m_table;
  const Collator& m_collator;
  const QString m_name;
  bool m_isEditable = true;
};

/// Edits cells of an `EditTableModel` and writes each keystroke to it. Escape restores the text from before editing.
class EditTableDelegate final : public QStyledItemDelegate {
 public:
  /// The model outlives the delegate.
  EditTableDelegate(EditTableModel& model, QObject* parent);

  QString displayText(const QVariant& value, const QLocale& locale) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  bool isPath(int column) const;

  EditTableModel& m_model;
  mutable QPersistentModelIndex m_edited;
  mutable QString m_original;
};

}  // namespace mirvel::ui
