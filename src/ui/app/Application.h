#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "core/app/HelpPages.h"
#include "core/app/Program.h"
#include "core/app/UpdateManager.h"
#include "core/base/ParallelWorkQueue.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/process/SystemProcessRunner.h"
#include "core/session/Foundation.h"
#include "helpers/privileged/SystemHelperConnections.h"
#include "ui/documents/ScriptWindows.h"
#include "ui/mainwindow/MainWindow.h"
#include "ui/preferences/PreferencesWindow.h"
#include "ui/scripts/ScriptSettings.h"
#include "ui/support/HttpsDownloads.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtInterface.h"
#include "ui/support/QtMainQueue.h"
#include "ui/support/QtWorkspace.h"

namespace mirvel::ui {

/// The complete program with its window: implements the ports with Qt, and composes all parts in the order in which
/// they must be constructed and destroyed. Requires a QApplication. For the main thread.
class Application {
 public:
  /// `roots` are the folders of the program. `machine` is the folder of a separate machine, for demo and tests; `roots`
  /// must then be `Roots::below` that folder. The helpers work there too, with the user's own rights, and no updates
  /// are looked for.
  Application(Roots roots, const Environment& environment, const std::string& locale = Localize::currentLocale(),
              const std::optional<std::filesystem::path>& machine = {});
  ~Application();

  /// Starts the first scan and creates the window. The window is shown when the scan has ended, after 0.1 s at the
  /// latest.
  void start();

  Program& program() { return m_program; }
  /// Must not be called before `start`.
  MainWindow& window() { return *m_window; }
  QtWorkspace& workspace() { return m_workspace; }
  /// The window of the preferences, which is created on the first call.
  PreferencesWindow& preferences();

 private:
  Platform platform();
  void showOnce();
  void lookForUpdates();
  void enterShell();

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
  std::unique_ptr<AgentSwitch> m_agentSwitch;
  ThreadWorkQueue m_authorisationQueue;
  SystemHelperConnections m_helpers;
  Program m_program;
  ThreadWorkQueue m_fileQueue;
  ParallelWorkQueue m_checkQueue;
  ThreadWorkQueue m_fetchQueue;  // declared last, because its destructor waits for a scan that uses all of the above
  std::unique_ptr<HttpsDownloads> m_downloads;
  std::unique_ptr<UpdateManager> m_updates;
  HelpPages m_help;
  ScriptTheme m_scriptTheme;
  std::unique_ptr<MainWindow> m_window;
  std::unique_ptr<PreferencesWindow> m_preferences;
  std::unique_ptr<ScriptWindows> m_scripts;
  const bool m_isOtherMachine;
  bool m_hasShown = false;
  Subscription m_loadingChanged;
};

/// Sets name, icon, layout direction and Qt's own translations, for the language of the texts. Requires a QApplication.
void prepareApplication(const Localize& localize);

/// Whether windows can be shown. To be asked before the QApplication is constructed, because without a display Qt
/// prints a list of its plugins and aborts. Always true on macOS.
bool hasDisplay(const Environment& environment);

}  // namespace mirvel::ui
