#pragma once

#include <QWidget>
#include <optional>
#include <string>

#include "core/editor/EditTable.h"
#include "core/ports/Interface.h"

class QFocusEvent;
class QKeyEvent;
class QToolButton;

namespace mirvel {
struct Foundation;
struct Platform;
}  // namespace mirvel

namespace mirvel::ui {

class EditTableModel;
class TableCells;

/// A small table with one to three columns and buttons that add and delete rows. By keyboard: Insert adds, Delete
/// deletes, Return and F2 edit a cell, Tab goes on to the next one, Escape restores the text. Secret values are
/// concealed until a button is pressed.
class EditTableView final : public QWidget {
  Q_OBJECT

 public:
  /// `key` names the table in messages and for assistive technology. The other references and the columns of the format
  /// outlive it.
  EditTableView(const Foundation& foundation, const Platform& platform, const Scheduled::NumberText& numbers,
                const TableFormat& format, std::string key);

  ~EditTableView() override;

  /// Called for each edit with its step for undo; may be empty.
  EditTable::Changed changed;

  const std::vector<TableRow>& rows() const { return m_table.rows(); }
  /// Shows rows, which is no edit. The selection and an open cell editor are kept if their row still exists.
  void fill(const std::vector<TableRow>& rows);
  /// If false, rows can only be deleted.
  void setEditable(bool isEditable);
  /// See `Section::refuse`.
  std::optional<InvalidField> refuse();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void makeButtons();
  void prepareView();
  void selectForKeys(const QFocusEvent& event);
  void pressed(const QKeyEvent& press);
  void copy();
  void paste();
  void add();
  void addChosen(const OpenPanel& panel);
  void showMenu();
  void addRow(const std::string& text);
  void deleteSelected();
  void updateButtons();
  void updateSecrets();
  void fitHeight();

  const Localize& m_localize;
  const Platform& m_platform;
  const std::string m_key;
  EditTable m_table;
  EditTableModel* m_model;
  TableCells* m_view;
  QToolButton* m_addButton = nullptr;
  QToolButton* m_deleteButton = nullptr;
  QToolButton* m_showButton = nullptr;
  bool m_isEditable = true;
};

}  // namespace mirvel::ui
