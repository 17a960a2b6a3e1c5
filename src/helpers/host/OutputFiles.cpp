#include "helpers/host/OutputFiles.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <utility>

#include "core/files/RegularFile.h"
#include "helpers/host/HostTime.h"

namespace mirvel::host {

namespace fs = std::filesystem;
using namespace std::chrono;

namespace {

/// While it exists, files are opened with the rights of another user, as far as this process may act as one: root's
/// host must not read for a user what that user can't.
class RightsOf {
 public:
  explicit RightsOf(const JobUser& user) : m_user(::geteuid()), m_group(::getegid()) {
    m_isOther = m_user == 0 && (user.user || user.group);
    if (!m_isOther) return;
    const int count = ::getgroups(0, nullptr);
    m_groups.resize(static_cast<std::size_t>(std::max(count, 0)));
    if (::getgroups(count, m_groups.data()) < 0) m_groups.clear();
    m_hasSucceeded = (!user.group || ::setgroups(user.groups.size(), user.groups.data()) == 0) &&
                     (!user.group || ::setegid(*user.group) == 0) && (!user.user || ::seteuid(*user.user) == 0);
  }
  // Root as the real user may always return.
  ~RightsOf() {
    if (!m_isOther) return;
    (void)!::seteuid(m_user);
    (void)!::setegid(m_group);
    (void)!::setgroups(m_groups.size(), m_groups.data());
  }
  RightsOf(const RightsOf&) = delete;
  RightsOf& operator=(const RightsOf&) = delete;

  explicit operator bool() const { return m_hasSucceeded; }

 private:
  uid_t m_user;
  gid_t m_group;
  std::vector<gid_t> m_groups;
  bool m_isOther = false;
  bool m_hasSucceeded = true;
};

std::vector<fs::path> outputPaths(const ProcessPlan& plan) {
  std::vector<fs::path> result;
  if (plan.rootDirectory) return result;
  for (const auto& path : {plan.standardOut, plan.standardError}) {
    if (!path || path->empty()) continue;
    const fs::path whole = fs::path("/") / plan.workingDirectory.value_or("") / *path;
    if (std::find(result.begin(), result.end(), whole) == result.end()) result.push_back(whole);
  }
  return result;
}

}  // namespace

#ifdef __linux__

FileNotices::~FileNotices() {
  if (m_inotify) m_loop.forget(m_inotify.descriptor());
}

bool FileNotices::watchFile(int file, Listener& listener) {
  // The link leads to the open file, whatever its name is now.
  return watch("/proc/self/fd/" + std::to_string(file), IN_MODIFY, {&listener, {}});
}

bool FileNotices::watchEntry(const fs::path& entry, Listener& listener) {
  return watch(entry.parent_path(), IN_CREATE | IN_MOVED_TO | IN_ONLYDIR, {&listener, entry.filename()});
}

bool FileNotices::watch(const fs::path& path, std::uint32_t events, Interest interest) {
  if (!m_inotify) {
    m_inotify = Inotify::open();
    if (m_inotify) m_loop.watch(m_inotify.descriptor(), POLLIN, [this](short) { take(); });
  }
  const int number = m_inotify ? m_inotify.add(path, events) : -1;
  if (number < 0) return false;
  auto& interests = m_interests[number];
  const bool isKnown = std::any_of(interests.begin(), interests.end(), [&](const Interest& other) {
    return other.listener == interest.listener && other.entry == interest.entry;
  });
  if (!isKnown) interests.push_back(std::move(interest));
  return true;
}

void FileNotices::forget(Listener& listener) {
  for (auto watch = m_interests.begin(); watch != m_interests.end();) {
    std::erase_if(watch->second, [&](const Interest& interest) { return interest.listener == &listener; });
    if (watch->second.empty()) m_inotify.remove(watch->first);
    watch = watch->second.empty() ? m_interests.erase(watch) : std::next(watch);
  }
}

void FileNotices::take() {
  const auto events = m_inotify.read();
  for (const Inotify::Event& event : events) {
    const bool isLost = (event.mask & IN_Q_OVERFLOW) != 0;  // then anything may have changed
    for (const auto& [number, interests] : m_interests) {
      if (!isLost && number != event.watch) continue;
      for (const Interest& interest : interests) {
        if (isLost || interest.entry == event.name) interest.listener->filesChanged();
      }
    }
    if ((event.mask & IN_IGNORED) != 0) m_interests.erase(event.watch);
  }
  m_pausedUntil = currentTime().running + pause;
  m_loop.change(m_inotify.descriptor(), 0);
}

void FileNotices::settle(milliseconds now) {
  if (!m_pausedUntil || now < *m_pausedUntil) return;
  m_pausedUntil.reset();
  m_loop.change(m_inotify.descriptor(), POLLIN);
}

#else

FileNotices::~FileNotices() = default;

bool FileNotices::watchFile(int, Listener&) {
  return false;
}

bool FileNotices::watchEntry(const fs::path&, Listener&) {
  return false;
}

void FileNotices::forget(Listener&) {}

void FileNotices::settle(milliseconds) {}

#endif

std::uint64_t OutputFiles::File::backlog() const {
  struct stat status {};
  if (::fstat(descriptor.number(), &status) != 0) return 0;
  const auto size = static_cast<std::uint64_t>(status.st_size);
  return size > offset ? size - offset : 0;
}

std::size_t OutputFiles::File::read(char* to, std::size_t most) {
  const ssize_t count = ::pread(descriptor.number(), to, most, static_cast<off_t>(offset));
  if (count <= 0) return 0;
  offset += static_cast<std::uint64_t>(count);
  return static_cast<std::size_t>(count);
}

OutputFiles::OutputFiles(const ProcessPlan& plan) : m_paths(outputPaths(plan)) {
  if (m_paths.empty()) return;
  auto user = JobUser::of(plan);
  if (user) {
    m_user = *std::move(user);
  } else {
    m_paths.clear();  // such a job can't be started
  }
}

void OutputFiles::begin() {
  for (const fs::path& path : m_paths) (void)open(path, true);
}

bool OutputFiles::open(const fs::path& path, bool isBegin) {
  const RightsOf rights(m_user);
  if (!rights) return false;
  auto file = RegularFile::open(path);
  if (!file) return false;
  const FileIdentity identity = FileIdentity::of(file->descriptor.number());
  const auto known =
      std::find_if(m_files.begin(), m_files.end(), [&](const File& other) { return other.identity == identity; });
  // Also if both paths lead to it. It moves behind those that have no path any more.
  if (known != m_files.end()) {
    m_files.splice(m_files.end(), m_files, known);
    return false;
  }
  if (m_files.size() == mostFiles) m_files.pop_front();
  m_files.push_back(
      {.descriptor = std::move(file->descriptor), .identity = identity, .offset = isBegin ? file->size : 0});
  return true;
}

bool OutputFiles::update(const std::function<void(File&)>& finish) {
  bool hasNew = false;
  for (const fs::path& path : m_paths) hasNew = open(path, false) || hasNew;
  for (File& file : m_files) {
    struct stat status {};
    const bool isTruncated =
        ::fstat(file.descriptor.number(), &status) == 0 && static_cast<std::uint64_t>(status.st_size) < file.offset;
    if (!isTruncated) continue;
    finish(file);
    file.offset = 0;
  }
  return hasNew;
}

bool OutputFiles::watch(FileNotices& notices, FileNotices::Listener& listener) const {
  bool isComplete = true;
  for (const fs::path& path : m_paths) {
    std::error_code failure;
    const fs::path target = fs::weakly_canonical(path, failure);
    isComplete = notices.watchEntry(failure ? path : target, listener) && isComplete;
  }
  for (const File& file : m_files) isComplete = notices.watchFile(file.descriptor.number(), listener) && isComplete;
  return isComplete;
}

}  // namespace mirvel::host
