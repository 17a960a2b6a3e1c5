#include "ui/app/Application.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <utility>

#include "core/base/Const.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/loginitems/PlatformLoginItems.h"
#include "core/process/Commands.h"
#include "helpers/agent/PlatformAgentSwitch.h"
#include "ui/app/MakeMainWindow.h"
#include "ui/app/MakePreferences.h"
#include "ui/support/InstalledFolders.h"
#include "ui/support/OwnIcons.h"
#include "ui/support/PlatformFolderMonitors.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

Application::Application(Roots roots, const Environment& environment, const std::string& locale,
                         const std::optional<fs::path>& machine)
    : m_foundation(std::move(roots), environment, catalogues(), locale),
      m_interface(m_foundation.defaults, m_foundation.localize),
      m_folderMonitors(platformFolderMonitors()),
      m_processRunner(environment),
      m_loginItems(
          loginItemsOfThisMachine(m_foundation.roots, environment, m_processRunner, m_foundation.commands, locale)),
      m_agentSwitch(agent::agentSwitchOfThisMachine(m_foundation.roots, m_processRunner, m_foundation.commands,
                                                    helpersFolder(), executablePath(), machine)),
      m_authorisationQueue("Authorisation"),
      m_helpers({.queue = m_mainQueue,
                 .background = m_authorisationQueue,
                 .programs = HelperPrograms::in(helpersFolder(), m_foundation.roots, environment, machine)}),
      m_program(m_foundation, platform()),
      m_fileQueue("File queue"),
      m_checkQueue("Checks", 8),
      m_fetchQueue("Fetch queue"),
      m_help(helpFolder(), m_workspace, m_interface, m_foundation.localize),
      m_scriptTheme(m_foundation.defaults, m_program.notifications),
      m_isOtherMachine(machine.has_value()) {
  enterShell();
}

Application::~Application() {
  if (m_updates && m_updates->wasPageShown()) m_program.appDelegate.updateWillInstall();
  m_program.shell.showHelp = {};
  m_program.shell.showPreferences = {};
}

void Application::enterShell() {
  m_program.shell.showHelp = [this](const std::string& fragment) { m_help.open(fragment); };
  m_program.shell.showPreferences = [this] { preferences().present(); };
}

PreferencesWindow& Application::preferences() {
  if (!m_preferences) m_preferences = makePreferencesWindow(m_program, m_icons);
  return *m_preferences;
}

Platform Application::platform() {
  return {.mainQueue = m_mainQueue,
          .fetchQueue = m_fetchQueue,
          .fileQueue = m_fileQueue,
          .checkQueue = m_checkQueue,
          .interface = m_interface,
          .workspace = m_workspace,
          .folderMonitors = *m_folderMonitors,
          .processRunner = m_processRunner,
          .loginItems = *m_loginItems,
          .agentSwitch = m_agentSwitch.get(),
          .console = m_console,
          .clock = m_clock,
          .helpers = &m_helpers};
}

void Application::start() {
  m_fetchQueue.add(growHeapOfThisThread);
  // The first scan runs while the window is being created. Its result is published by the event loop.
  m_program.appDelegate.applicationDidFinishLaunching();
  m_window = makeMainWindow(m_program, m_icons);
  m_interface.setWindow(m_window.get());
  m_scripts = std::make_unique<ScriptWindows>(
      ScriptContext{m_program.session, m_program.documents, m_program.control, m_program.runs, m_program.repairs});
  m_program.documents.offerRecovered();
  if (!m_isOtherMachine) lookForUpdates();

  constexpr double longestWait = 0.1;
  m_loadingChanged = m_program.notifications.loadingChanged.subscribe([this] { showOnce(); });
  m_mainQueue.postAfter(longestWait, [this] { showOnce(); });
}

void Application::lookForUpdates() {
  m_program.shell.checkForUpdate = [this](bool isManual) {
    if (!m_updates) {  // created on first use
      m_downloads = std::make_unique<HttpsDownloads>();
      m_updates = std::make_unique<UpdateManager>(m_foundation.localize, m_program.platform, m_program.shell,
                                                  *m_downloads, MIRVEL_VERSION);
    }
    m_updates->check(Const::AppName::mirvel, isManual);
  };
}

void Application::showOnce() {
  if (std::exchange(m_hasShown, true)) return;
  m_loadingChanged = {};
  m_window->show();
}

void prepareApplication(const Localize& localize) {
  QApplication::setApplicationName(qt(Const::AppName::mirvel));
  QApplication::setApplicationDisplayName(QString());  // titles contain the name already
  QApplication::setApplicationVersion(QStringLiteral(MIRVEL_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("mirvel"));
  QApplication::setWindowIcon(OwnIcons::application());
  QApplication::setLayoutDirection(localize.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  auto* translator = new QTranslator(QCoreApplication::instance());  // for the dialogs of Qt
  if (translator->load(QLocale(qt(localize.locale())), QStringLiteral("qtbase"), QStringLiteral("_"),
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(translator);
  }
}

bool hasDisplay(const Environment& environment) {
#ifdef __linux__
  const auto isSet = [&](const char* name) {
    const auto found = environment.find(name);
    return found != environment.end() && !found->second.empty();
  };
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
#else
  (void)environment;
  return true;
#endif
}

}  // namespace mirvel::ui
