#pragma once

#include <QWidget>

#include "core/app/Program.h"
#include "core/editor/GridTable.h"

class QListWidget;
class QListWidgetItem;
class QToolButton;

namespace mirvel::ui {

/// A small table with buttons to add and delete rows, whose changes the delegate hears of at once.
class GridTableViewController final : public QWidget {
 public:
  /// `key` is the table's name, also for the delegate, which outlives it.
  GridTableViewController(Program& program, GridTable::Kind kind, const GridTable::Source& content,
                          const std::string& key, GridTableDelegate& delegate, QWidget* parent = nullptr);

  /// Why the rows can't be saved; the one that is the reason then gets the keys. None: they can be.
  std::optional<InvalidField> refuse();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void prepareList();
  void prepareButtons();
  QListWidgetItem* makeItem(const GridTable::Item& row) const;
  void itemChanged(QListWidgetItem& item);
  void selectForKeys(const QFocusEvent& event);
  bool pressed(int key);

  void add();
  void addChosen(const OpenPanel& panel);
  void showSessionTypes();
  void addRow(const std::string& text);
  void deleteSelected();
  void editSelected();
  void fitHeight();
  void markRows();

  Program& m_program;
  GridTable::Table m_table;
  QListWidget* m_list;
  QToolButton* m_addButton;
  QToolButton* m_deleteButton;
};

}  // namespace mirvel::ui
