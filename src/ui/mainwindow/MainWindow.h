#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>
#include <string>

#include "core/base/Signal.h"
#include "core/session/Shell.h"
#include "ui/editor/EditorContext.h"
#include "ui/mainwindow/CommandActions.h"
#include "ui/runs/RunSheets.h"

class QLineEdit;
class QSessionManager;
class QSplitter;

namespace mirvel {
class Termination;
struct WindowContext;
}  // namespace mirvel

namespace mirvel::ui {

class CreationSheets;
class DetailViewController;
class ListModeView;
class ModeTabs;
class Toolbar;

/// The main window.
class MainWindow final : public QMainWindow, private MainWindowType {
 public:
  /// Makes the sheets that belong to a window. They are destroyed before the window is.
  using MakeSheets = std::function<std::unique_ptr<CreationSheets>(QWidget& window)>;

  /// All arguments must outlive the window, as must everything that the contexts refer to.
  MainWindow(const WindowContext& context, Termination& termination, const EditorContext& editor,
             const MakeSheets& makeSheets);
  ~MainWindow() override;

  ModeTabs& tabs() { return *m_tabs; }
  DetailViewController& details() const { return *m_details; }
  ListModeView& listMode();
  QLineEdit& filter();

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
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

  void makeContent(const EditorContext& editor);
  void enterShell(IconLoader& icons);
  void showTitle();
  void updateVisibility();
  void runsChanged(const Jobs& jobs);

  const WindowContext& m_context;
  Termination& m_termination;
  CommandActions m_actions;
  std::unique_ptr<CreationSheets> m_sheets;
  RunSheets m_runSheets;
  ModeTabs* m_tabs = nullptr;
  DetailViewController* m_details = nullptr;
  Toolbar* m_toolbar = nullptr;
  QSplitter* m_splitter = nullptr;
  std::string m_title;
  bool m_isTitleVisible = true;
  Subscription m_runsChanged;
};

}  // namespace mirvel::ui
