#include "core/preferences/FolderList.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "core/base/ThreadWorkQueue.h"
#include "core/catalogue/JobFolder.h"
#include "core/files/URL.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/propertylist/Encoding.h"
#include "core/settings/Defaults.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

bool isSame(const std::string& a, const std::string& b) {
  return URL::file(a).equalTo(URL::file(b));
}

bool hasFolder(const std::vector<std::string>& paths, const std::string& path) {
  return std::any_of(paths.begin(), paths.end(), [&](const auto& other) { return isSame(other, path); });
}

/// The paths in their order, each once.
std::vector<std::string> distinct(const std::vector<std::string>& paths) {
  std::vector<std::string> result;
  for (const auto& path : paths) {
    if (!hasFolder(result, path)) result.push_back(path);
  }
  return result;
}

}  // namespace

std::string folderProblem(const fs::path& folder, const Localize& localize) {
  const PreferencesTexts texts(localize);
  if (!folder.is_absolute()) return texts.isntAbsolute();
  if (JobFolder::open(folder)) return {};
  const int reason = errno;
  if (reason == ENOENT) return texts.doesntExist();
  if (reason == ENOTDIR) return texts.isntAFolder();
  return texts.cantBeRead(std::generic_category().message(reason));
}

FolderList::FolderList(Defaults& defaults, WorkQueue& fileQueue, MainQueue& mainQueue, const Localize& localize,
                       fs::path home)
    : m_defaults(defaults),
      m_fileQueue(fileQueue),
      m_mainQueue(mainQueue),
      m_localize(localize),
      m_home(std::move(home)),
      m_delay(mainQueue),
      m_settingChanged(defaults.changed().subscribe([this](const std::string& key) {
        if (key != Defaults::Key::folders) return;
        m_changed.post();
        check();
      })) {}

std::vector<Folder> FolderList::folders() const {
  const PreferencesTexts texts(m_localize);
  const auto paths = distinct(m_defaults.folders());
  std::map<std::string, int> ends;
  for (const auto& path : paths) ++ends[URL::file(path).lastPathComponent()];
  std::vector<Folder> result;
  for (const auto& path : paths) {
    const std::string end = URL::file(path).lastPathComponent();
    const std::string shown = localizedDisplayPath(path, m_home.native());
    const auto known = m_problems.find(path);
    Folder folder{.path = path, .title = ends[end] > 1 || end.empty() ? shown : end};
    if (known != m_problems.end()) folder.problem = known->second;
    folder.toolTip = folder.problem.empty() ? shown : texts.folderWithProblem(shown, folder.problem);
    result.push_back(std::move(folder));
  }
  return result;
}

void FolderList::check() {
  for (const auto& path : distinct(m_defaults.folders())) {
    auto answer = m_delay.whileOwned([this, path](const std::string& problem) { checked(path, problem); });
    m_fileQueue.add([path, answer = std::move(answer), &localize = m_localize, &queue = m_mainQueue] {
      queue.post([answer, problem = folderProblem(path, localize)] { answer(problem); });
    });
  }
}

void FolderList::checked(const std::string& path, const std::string& problem) {
  std::string& known = m_problems[path];
  if (std::exchange(known, problem) != problem) m_changed.post();
}

Result<void> FolderList::add(const std::vector<fs::path>& folders) {
  const auto old = m_defaults.folders();
  auto paths = old;
  Result<void> result;
  for (const auto& folder : folders) {
    const std::string& path = folder.native();
    if (!propertylist::isUtf8(path)) {
      result = Error{
          .code = Error::Code::BadArgument, .message = PreferencesTexts(m_localize).itsPathIsntUTF8(), .file = path};
    } else if (!hasFolder(paths, path)) {
      paths.push_back(path);
    }
  }
  if (paths != old) (void)m_defaults.setFolders(paths);  // the store reports failures
  return result;
}

void FolderList::remove(const std::string& path) {
  auto paths = m_defaults.folders();
  std::erase_if(paths, [&](const auto& other) { return isSame(other, path); });
  (void)m_defaults.setFolders(paths);  // the store reports failures
}

}  // namespace mirvel
