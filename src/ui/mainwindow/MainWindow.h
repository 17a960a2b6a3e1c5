#pragma once

#include <QMainWindow>

#include "core/app/Program.h"
#include "ui/support/IconLoader.h"

class QLineEdit;

namespace mirvel::ui {

class ListModeView;
class MainMenu;

/// The one window of the catalogue.
class MainWindow final : public QMainWindow, private MainWindowType {
 public:
  MainWindow(Program& program, IconLoader& icons);
  ~MainWindow() override;

  ListModeView& listMode() { return *m_listMode; }
  QLineEdit& filter() { return *m_filter; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void setTitle(const std::string& title) override;
  void setEdited(bool isEdited) override;
  void validateVisibleItems() override;

  void makeContent(IconLoader& icons);
  void makeToolbar();
  void endFilter();

  Program& m_program;
  MainMenu* m_menu;
  ListModeView* m_listMode;
  QLineEdit* m_filter;
};

}  // namespace mirvel::ui
