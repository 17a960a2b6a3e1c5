#pragma once

#include <QTreeWidget>

#include "core/base/Signal.h"
#include "core/preferences/PreferencesContext.h"
#include "ui/support/SheetViewController.h"

class QPushButton;

namespace mirvel {
class FolderList;
}

namespace mirvel::ui {

class IconLoader;

/// The list of the extra folders. Insert adds one, Delete removes the selected one.
class FoldersTable final : public QTreeWidget {
  Q_OBJECT
 public:
  explicit FoldersTable(QString emptyText);

 signals:
  void addWanted();
  void removeWanted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  const QString m_emptyText;
};

/// The sheet with the extra folders.
class FoldersViewController final : public SheetViewController {
 public:
  /// All must outlive the sheet.
  FoldersViewController(const PreferencesContext& context, FolderList& folders, IconLoader& icons, QWidget& window);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void makeButtons();
  void fill();
  void add();
  void remove();
  std::string selected() const;

  const PreferencesContext& m_context;
  FolderList& m_folders;
  IconLoader& m_icons;
  FoldersTable* m_table;
  QPushButton* m_addButton;
  QPushButton* m_removeButton;
  QPushButton* m_doneButton;
  Subscription m_changed;
};

}  // namespace mirvel::ui
