#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "core/app/Program.h"
#include "core/app/UpdateManager.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/process/SystemProcessRunner.h"
#include "core/session/Foundation.h"
#include "helpers/privileged/SystemHelperConnections.h"
#include "ui/mainwindow/MainWindow.h"
#include "ui/support/HttpsDownloads.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtInterface.h"
#include "ui/support/QtMainQueue.h"
#include "ui/support/QtWorkspace.h"

namespace mirvel::ui {

/// The whole program with its window, on the folders that it is given. Needs a QApplication; main thread only.
class Application {
 public:
  /// `machine` is the folder of another machine, whose roots are then those of `Roots::below`: the helpers work there
  /// too, with the user's own rights.
  Application(Roots roots, const Environment& environment, const std::string& locale = Localize::currentLocale(),
              const std::optional<std::filesystem::path>& machine = {});
  ~Application();

  /// Lets the program begin its work. The window comes up with its jobs, or a moment later without them.
  void start();

  Program& program() { return m_program; }
  /// From `start` on.
  MainWindow& window() { return *m_window; }
  QtWorkspace& workspace() { return m_workspace; }

 private:
  Platform platform();
  void showAtFirst();
  void lookForUpdates();

  Foundation m_foundation;
  IconLoader m_icons;
  QtMainQueue m_mainQueue;
  QtInterface m_interface;
  QtWorkspace m_workspace;
  std::unique_ptr<FolderMonitors> m_folderMonitors;
  SystemProcessRunner m_processRunner;
  StandardConsole m_console;
  SystemClock m_clock;
  std::unique_ptr<LoginItems> m_loginItems;
  ThreadWorkQueue m_authorisationQueue;
  SystemHelperConnections m_helpers;
  Program m_program;
  ThreadWorkQueue m_fileQueue;
  ThreadWorkQueue m_fetchQueue;  // after all that a scan uses, which its thread's end waits for
  std::unique_ptr<HttpsDownloads> m_downloads;
  std::unique_ptr<UpdateManager> m_updates;
  std::unique_ptr<MainWindow> m_window;
  const bool m_isOtherMachine;
  bool m_hasShown = false;
  Subscription m_loadingChanged;
};

/// Names, icon and writing direction of the application, from the texts' language.
void prepareApplication(const Localize& localize);

}  // namespace mirvel::ui
