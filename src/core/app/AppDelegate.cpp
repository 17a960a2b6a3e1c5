#include "core/app/AppDelegate.h"

#include <optional>
#include <utility>

#include "core/app/Program.h"
#include "core/base/Const.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

/// The parts of "scheme://host/...". Base64 text goes to the host as it stands, slashes included, so everything behind
/// the two slashes is looked at.
struct ParsedURL {
  std::string scheme;
  std::string host;
};

std::optional<ParsedURL> parse(const std::string& url) {
  const auto colon = url.find("://");
  if (colon == std::string::npos || colon == 0) return std::nullopt;
  return ParsedURL{.scheme = url.substr(0, colon), .host = url.substr(colon + 3)};
}

/// Without what browsers and launchers add to a URL: an empty path at its end, and escapes of the signs of base64.
std::string base64Text(std::string host) {
  const auto replaceAll = [&host](std::string_view from, char to) {
    for (auto at = host.find(from); at != std::string::npos; at = host.find(from, at))
      host.replace(at, from.size(), 1, to);
  };
  replaceAll("%3D", '=');
  replaceAll("%3d", '=');
  replaceAll("%2F", '/');
  replaceAll("%2f", '/');
  replaceAll("%2B", '+');
  replaceAll("%2b", '+');
  if (host.size() % 4 == 1 && host.ends_with('/')) host.pop_back();
  return host;
}

}  // namespace

AppDelegate::AppDelegate(Program& program)
    : m_program(program), m_limit(program.platform.mainQueue), m_delay(program.platform.mainQueue) {
  const auto made = makeAgentsFolder(program.foundation.roots);
  if (!made) program.platform.interface.present(made.error());
}

void AppDelegate::applicationDidFinishLaunching() {
  m_program.actions.finishMoves();
  m_program.drafts.offer();
  if (m_program.catalogue.jobs().empty()) m_program.fetcher.refresh();
  m_delay(0.01, [this] { setUpMonitors(); });
}

void AppDelegate::setUpMonitors() {
  for (const Kind kind : Kind::monitoredKinds) {
    const auto folder = kind.folderURL(m_program.foundation.roots);
    if (!folder) continue;
    m_monitors.push_back(m_program.platform.folderMonitors.watch(*folder, [this] { folderDidChange(); }));
  }
  m_delay(1.0, [this] { updateAgent(); });
}

void AppDelegate::updateAgent() {
  const Defaults& defaults = m_program.foundation.defaults;
  renewRegistration();
  if (m_program.platform.agentSwitch) m_program.platform.agentSwitch->setEnabled(Const::agent, defaults.runAgent());
  if (defaults.automaticallyCheckForUpdate() && m_program.shell.checkForUpdate) m_program.shell.checkForUpdate(false);
}

void AppDelegate::renewRegistration() {
  AgentSwitch* agentSwitch = m_program.platform.agentSwitch;
  Defaults& defaults = m_program.foundation.defaults;
  if (!agentSwitch || !defaults.firstMirvelLaunch()) return;
  agentSwitch->setEnabled(Const::agent, false);
  (void)defaults.setFirstMirvelLaunch(false);  // at worst it is renewed at the next start too
  m_program.platform.mainQueue.sleep(0.1);
}

void AppDelegate::updateWillInstall() {
  renewRegistration();
  if (m_program.platform.agentSwitch) m_program.platform.agentSwitch->setEnabled(Const::agent, false);
}

void AppDelegate::folderDidChange() {
  if (m_program.mainWindow.isTerminating()) return;
  m_limit.interval("MainMonitor", 1.0, [this] { m_delay(0.1, [this] { m_program.fetcher.refresh(); }); });
}

bool AppDelegate::applicationShouldTerminate() {
  const bool isAsked = m_program.saving.isBusy() || m_program.deleting.isBusy();
  if (m_program.shell.endPrivilegedConnection && !isAsked) m_program.shell.endPrivilegedConnection();
  if ((isHelperAtWork() || !m_program.editing.hasUnsavedChanges()) && waitsForHelper()) return false;
  const bool mayEnd = !m_program.editing.hasUnsavedChanges() || m_endsUnasked;
  const bool wasAsked =
      m_program.mainWindow.isTerminating() && m_endsUnasked;  // a second signal ends what doesn't answer
  if (mayEnd && (m_program.drafts.settle() || wasAsked)) return true;
  m_endsUnasked = false;
  m_program.mainWindow.askBeforeQuitting();
  return false;
}

void AppDelegate::endUnasked() {
  keepEdit();
  m_endsUnasked = true;
  if (m_program.shell.terminate) m_program.shell.terminate();
}

void AppDelegate::keepEdit() {
  if (m_program.shell.edit) m_program.shell.edit->endEditing();
  (void)m_program.drafts.settle();  // what fails has been reported
}

/// Whether a save or deletion is under way, which still needs its helper or an answer to its own question. While the
/// user is asked for a password nothing has begun yet.
bool AppDelegate::isHelperAtWork() const {
  return (m_program.saving.isBusy() || m_program.deleting.isBusy()) && !m_program.actions.isAuthorising();
}

bool AppDelegate::waitsForHelper() {
  const bool isSecondTry = m_isWaiting;
  m_isWaiting = isHelperAtWork();
  if (!m_isWaiting || isSecondTry) return false;
  const auto tryAgain = [this] {
    if (!std::exchange(m_isWaiting, false)) return;
    m_delay(0, [this] {
      m_saved = {};
      m_deleted = {};
      if (m_program.shell.terminate) m_program.shell.terminate();
    });
  };
  m_saved = m_program.saving.changed().subscribe(tryAgain);
  m_deleted = m_program.deleting.changed().subscribe(tryAgain);
  return true;
}

void AppDelegate::applicationDidBecomeActive() {
  m_program.notifications.appStatusChanged.post();
}

void AppDelegate::applicationDidResignActive() {
  m_program.notifications.appStatusChanged.post();
}

void AppDelegate::applicationOpenURLs(const std::vector<std::string>& urls) {
  const auto url = urls.empty() ? std::nullopt : parse(urls.front());
  if (!url || url->scheme != Const::jobScheme || url->host.empty()) return;
  const auto path = fromBase64(base64Text(url->host));
  if (!path || path->empty()) return;
  if (m_program.editing.hasUnsavedChanges()) return m_program.mainWindow.unsavedChangesAlert();
  m_delay(0.3, [this, job = URL::file(*path)] {
    m_opened = job;
    selectOpened();
  });
}

/// At a cold start there may be no job yet.
void AppDelegate::selectOpened() {
  if (!m_opened) return;
  if (!m_program.fetcher.hasScanned()) {
    m_scanned = m_program.notifications.loadingChanged.subscribe([this] { m_delay(0, [this] { selectOpened(); }); });
    return;
  }
  m_scanned = {};
  const URL job = *std::exchange(m_opened, std::nullopt);
  if (ModeType* mode = m_program.currentMode.view()) mode->select(job);
}

std::string jobURL(const std::string& path) {
  return std::string(Const::jobScheme) + "://" + toBase64(path);
}

}  // namespace mirvel
