#include "core/app/JobURLOpener.h"

#include <string_view>
#include <utility>

#include "core/base/Const.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Notifications.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

/// Undoes what browsers and launchers add to a URL: an empty path at its end, and escapes of base64's punctuation.
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
  // The length of base64 is a multiple of 4, so this slash isn't part of it.
  if (host.size() % 4 == 1 && host.ends_with('/')) host.pop_back();
  return host;
}

/// The path of the job; none if the URL isn't one of ours.
std::optional<std::string> pathIn(std::string_view url) {
  const std::string prefix = std::string(Const::jobScheme) + "://";
  if (!url.starts_with(prefix)) return std::nullopt;
  // Base64 may contain slashes, so the path of the URL belongs to it too.
  auto path = fromBase64(base64Text(std::string(url.substr(prefix.size()))));
  if (!path || path->empty()) return std::nullopt;
  return std::move(*path);
}

}  // namespace

JobURLOpener::JobURLOpener(MainQueue& queue, const CurrentMode& currentMode, const Editing& editing,
                           const Fetcher& fetcher, MainWindowController& mainWindow, Notifications& notifications)
    : m_currentMode(currentMode),
      m_editing(editing),
      m_fetcher(fetcher),
      m_mainWindow(mainWindow),
      m_notifications(notifications),
      m_delay(queue) {}

void JobURLOpener::applicationOpenURLs(const std::vector<std::string>& urls) {
  const auto path = urls.empty() ? std::nullopt : pathIn(urls.front());
  if (!path) return;
  if (m_editing.hasUnsavedChanges()) return m_mainWindow.unsavedChangesAlert();
  m_delay(0.3, [this, job = URL::file(*path)] {
    m_opened = job;
    selectOpened();
  });
}

void JobURLOpener::selectOpened() {
  if (!m_opened) return;
  if (!m_fetcher.hasScanned()) {  // the URL started the program
    m_scanned = m_notifications.loadingChanged.subscribe([this] { m_delay(0, [this] { selectOpened(); }); });
    return;
  }
  m_scanned = {};
  const URL job = *std::exchange(m_opened, std::nullopt);
  if (ModeType* mode = m_currentMode.view()) mode->select(job);
}

std::string jobURL(const std::string& path) {
  return std::string(Const::jobScheme) + "://" + toBase64(path);
}

}  // namespace mirvel
