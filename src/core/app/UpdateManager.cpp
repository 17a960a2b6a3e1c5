#include "core/app/UpdateManager.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/app/AppTexts.h"
#include "core/base/Const.h"
#include "core/locale/Localize.h"
#include "core/propertylist/Reader.h"
#include "core/session/Platform.h"
#include "core/session/Shell.h"
#include "core/text/Digits.h"

namespace mirvel {

namespace {

struct Release {
  std::string version;
  std::string address;
};

Error badFeed() {
  return {.code = Error::Code::Malformed, .message = "the list of versions can't be understood"};
}

Result<Release> releaseIn(const std::string& feed, std::string_view app) {
  const auto apps = propertylist::readDictionary(feed);
  if (!apps) return apps.error().code == Error::Code::WrongType ? badFeed() : apps.error();
  const auto* const release = apps->get<propertylist::Dictionary>(app);
  const auto* const version = release ? release->get<std::string>("Version") : nullptr;
  const auto* const address = release ? release->get<std::string>("URL") : nullptr;
  if (!version || !address || !address->starts_with("https://")) return badFeed();
  return Release{*version, *address};
}

/// Removes the number up to the first dot, and returns it; 0 if it isn't a number.
std::int64_t takeNumber(std::string_view& version) {
  const std::string_view digits = version.substr(0, version.find('.'));
  version.remove_prefix(std::min(version.size(), digits.size() + 1));
  return Decimal::toInt(digits).value_or(0);
}

}  // namespace

bool UpdateManager::isNewer(std::string_view version, std::string_view than) {
  while (!version.empty() || !than.empty()) {
    const std::int64_t a = takeNumber(version), b = takeNumber(than);
    if (a != b) return a > b;
  }
  return false;
}

UpdateManager::UpdateManager(const Localize& localize, const Platform& platform, const Shell& shell,
                             Downloads& downloads, std::string version)
    : m_localize(localize),
      m_platform(platform),
      m_shell(shell),
      m_downloads(downloads),
      m_version(std::move(version)),
      m_delay(platform.mainQueue) {}

void UpdateManager::check(std::string_view app, bool manual) {
  m_downloads.get(std::string(Const::siteURL) + "/updates.plist",
                  [this, app = std::string(app), manual](const Result<std::string>& feed) { read(feed, app, manual); });
}

void UpdateManager::read(const Result<std::string>& feed, std::string_view app, bool manual) {
  const auto release = feed ? releaseIn(*feed, app) : Result<Release>(feed.error());
  if (release && isNewer(release->version, m_version)) {
    const MainWindowType* const window = m_shell.mainWindow;
    if (manual || !window || !window->hasSheet()) offer(release->version, release->address);
  } else if (!manual) {
    return;
  } else if (!release) {
    m_platform.interface.error(AppTexts(m_localize).couldntCheckForUpdates(), release.error().text());
  } else {
    m_platform.interface.beginSheet({.message = AppTexts(m_localize).mirvelIsUpToDate(),
                                     .informativeText = AppTexts(m_localize).youHaveVersion(m_version),
                                     .defaultTitle = m_localize.ok()},
                                    [](int) {});
  }
}

void UpdateManager::offer(const std::string& version, const std::string& address) {
  m_platform.interface.beginSheet({.message = AppTexts(m_localize).newVersion(version),
                                   .informativeText = AppTexts(m_localize).youHaveVersion(m_version),
                                   .defaultTitle = m_localize.show(),
                                   .alternateTitle = m_localize.later()},
                                  m_delay.whileOwned([this, address](int button) {
                                    if (button != Interface::defaultButton) return;
                                    m_wasPageShown = m_platform.workspace.openAddress(address) || m_wasPageShown;
                                  }));
}

}  // namespace mirvel
