#include "core/session/ExtraFolders.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "core/base/ThreadWorkQueue.h"
#include "core/catalogue/JobFolder.h"
#include "core/files/URL.h"
#include "core/settings/Defaults.h"

namespace mirvel {

ExtraFolders::ExtraFolders(Defaults& defaults, WorkQueue& checkQueue, MainQueue& mainQueue)
    : m_defaults(defaults),
      m_checkQueue(checkQueue),
      m_delay(mainQueue),
      m_outbox(std::make_shared<Outbox>(mainQueue)),
      m_settingChanged(defaults.changed().subscribe([this](const std::string& key) {
        if (key != Defaults::Key::folders) return;
        check();
        m_changed.post();
      })) {}

ExtraFolders::~ExtraFolders() {
  m_outbox->close();
}

bool ExtraFolders::isSame(const std::string& a, const std::string& b) {
  return URL::file(a).equalTo(URL::file(b));
}

std::vector<std::string> ExtraFolders::paths() const {
  std::vector<std::string> result;
  for (const auto& path : m_defaults.folders()) {
    const auto isThis = [&](const std::string& other) { return isSame(path, other); };
    if (std::none_of(result.begin(), result.end(), isThis)) result.push_back(path);
  }
  return result;
}

ExtraFolders::State ExtraFolders::state(const std::string& path) const {
  const auto known = m_folders.find(path);
  return known == m_folders.end() ? State::Unknown : known->second.state;
}

int ExtraFolders::failure(const std::string& path) const {
  const auto known = m_folders.find(path);
  return known == m_folders.end() ? 0 : known->second.failure;
}

std::vector<std::filesystem::path> ExtraFolders::answered() const {
  std::vector<std::filesystem::path> result;
  for (const auto& path : paths()) {
    if (state(path) == State::Answered) result.emplace_back(path);
  }
  return result;
}

void ExtraFolders::check(MainQueue::Task ended) {
  std::map<std::string, Folder> before = std::exchange(m_folders, {});
  for (const auto& path : paths()) {
    if (!std::filesystem::path(path).is_absolute()) continue;
    auto kept = before.extract(path);
    Folder& folder = kept.empty() ? m_folders[path] : m_folders.insert(std::move(kept)).position->second;
    if (folder.look == 0) look(path, folder);
  }
  if (ended) m_waiting.push_back(std::move(ended));
  endChecks();
}

void ExtraFolders::look(const std::string& path, Folder& folder) {
  folder.look = ++m_looks;
  auto onMain = m_delay.whileOwned([this, path, look = folder.look](int failure) { answered(path, look, failure); });
  m_checkQueue.add([path, outbox = m_outbox, onMain = std::move(onMain)] {
    const int failure = JobFolder::open(path) ? 0 : errno;
    outbox->post([onMain, failure] { onMain(failure); });
  });
  m_delay(patience, [this, path, look = folder.look] { endPatience(path, look); });
}

void ExtraFolders::answered(const std::string& path, int look, int failure) {
  const auto found = m_folders.find(path);
  if (found == m_folders.end() || found->second.look != look) return;  // it was removed from the settings
  const Folder before = std::exchange(found->second, {.state = State::Answered, .failure = failure});
  const bool wasLate = before.state == State::Late;
  if (before.state != State::Answered || before.failure != failure) m_changed.post();
  endChecks();
  if (wasLate) m_recovered.post();
}

void ExtraFolders::endPatience(const std::string& path, int look) {
  const auto found = m_folders.find(path);
  if (found == m_folders.end() || found->second.look != look) return;
  found->second.state = State::Late;
  m_changed.post();
  endChecks();
}

/// Calls those who wait for a check, unless there is a look that isn't late.
void ExtraFolders::endChecks() {
  const bool isWaiting = std::any_of(m_folders.begin(), m_folders.end(), [](const auto& entry) {
    return entry.second.look != 0 && entry.second.state != State::Late;
  });
  if (isWaiting) return;
  for (const auto& ended : std::exchange(m_waiting, {})) ended();
}

}  // namespace mirvel
