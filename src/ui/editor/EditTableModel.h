#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <optional>
#include <vector>

#include "core/editor/EditTable.h"

namespace mirvel::ui {

/// Presents the rows of a table as an item model. The table is changed through the model only.
class EditTableModel final : public QAbstractTableModel {
 public:
  /// `name` is the accessible name of columns without a title. Table, collator and texts outlive the model.
  EditTableModel(EditTable& table, const Collator& collator, const Localize& localize, QString name, QObject* parent);

  const EditTable& table() const { return m_table; }
  const TableFormat::Column& column(int column) const;
  /// Shows other rows. The selection and an open cell editor stay with their row.
  void fill(const std::vector<TableRow>& rows);
  int add(const std::string& text);
  void removeAt(int row);
  /// As `EditTable::paste`.
  Result<void> paste(const std::string& text);
  /// If false, no cell can be changed; rows can still be removed.
  void setEditable(bool isEditable) { m_isEditable = isEditable; }
  /// Whether secret values are shown instead of bullets. Off at first.
  void setShowsSecrets(bool isShown);
  bool hasSecrets() const;
  /// The text in place of that of an empty cell; empty if there is none.
  QString placeholder(const QModelIndex& index) const;
  /// The reason why a cell can't be saved; empty if it can.
  QString problem(const QModelIndex& index) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  std::optional<std::size_t> position(const QModelIndex& index) const;
  QVariant toolTip(const QModelIndex& index, const std::string& text) const;
  void follow();
  void followTexts();
  void removeVanished(const std::vector<EditTable::Id>& now);
  void appendNew(const std::vector<EditTable::Id>& now);
  void reorder(const std::vector<EditTable::Id>& now);
  void repaintAll();

  EditTable& m_table;
  const Collator& m_collator;
  const Localize& m_localize;
  const QString m_name;
  std::vector<EditTable::Id> m_shown;  ///< the rows, as the views know them
  bool m_isEditable = true;
  bool m_showsSecrets = false;
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
  EditTableModel& m_model;
  mutable QPersistentModelIndex m_edited;
  mutable QString m_original;
};

}  // namespace mirvel::ui
