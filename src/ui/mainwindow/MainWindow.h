#pragma once

#include <QMainWindow>

#include "core/app/Program.h"
#include "ui/creation/CreationSheets.h"
#include "ui/mainwindow/CommandActions.h"
#include "ui/support/IconLoader.h"

class QLineEdit;
class QSessionManager;
class QSplitter;

namespace mirvel::ui {

class DetailViewController;
class ListModeView;
class ModeTabs;
class Toolbar;

/// The main window.
class MainWindow final : public QMainWindow, private MainWindowType {
 public:
  MainWindow(Program& program, IconLoader& icons);
  ~MainWindow() override;

  ModeTabs& tabs() { return *m_tabs; }
  DetailViewController& details() const { return *m_details; }
  ListModeView& listMode();
  QLineEdit& filter();

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void setTitle(const std::string& title) override;
  void setTitleVisible(bool isVisible) override;
  void setEdited(bool isEdited) override;
  void validateVisibleItems() override;
  void showMode(Mode mode) override;
  void clearFilter() override;
  void focusOnFilter() override;
  bool hasFilterField() const override;
  bool hasSheet() const override;
  bool isFullScreen() const override { return QMainWindow::isFullScreen(); }
  void toggleFullScreen() override;
  void showAbout() override;
  void askBeforeSessionEnds(QSessionManager& session);

  void makeContent(IconLoader& icons);
  void enterShell(IconLoader& icons);
  void showTitle();

  Program& m_program;
  CommandActions m_actions;
  CreationSheets m_sheets;
  ModeTabs* m_tabs = nullptr;
  DetailViewController* m_details = nullptr;
  Toolbar* m_toolbar = nullptr;
  QSplitter* m_splitter = nullptr;
  std::string m_title;
  bool m_isTitleVisible = true;
};

}  // namespace mirvel::ui
