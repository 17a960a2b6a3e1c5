#include "ui/support/InotifyFolderMonitors.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "ui/support/PathWalk.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

/// One inotify instance: a watch on the folder, and one on each folder on the way to it, of whose entries only the next
/// on the way counts.
class InotifyFolderMonitor final : public FolderMonitor {
 public:
  InotifyFolderMonitor(fs::path folder, std::function<void()> folderDidChange, FileDescriptor inotify,
                       FolderMonitors& fallback)
      : m_folder(std::move(folder)),
        m_folderDidChange(std::move(folderDidChange)),
        m_fallback(fallback),
        m_inotify(std::move(inotify)) {
    if (!m_inotify) {
      fallBack();
      return;
    }
    m_notifier.emplace(m_inotify.number(), QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this] { readEvents(); });
    arm();
  }

 private:
  /// What a batch of events asks for.
  struct News {
    bool isOfFolder = false;  ///< something in the folder has changed
    bool isOfWay = false;     ///< another folder may be in its place, or none
  };
  struct Watch {
    std::set<std::string> names;  ///< the entries that count, if it isn't the folder itself
    bool isFolder = false;
  };

  void readEvents();
  News newsOf(const char* events, std::size_t size) const;
  void collect(const inotify_event& event, const char* name, News& news) const;
  void arm();
  int add(const fs::path& folder, std::uint32_t events);
  void fallBack();

  fs::path m_folder;
  std::function<void()> m_folderDidChange;
  FolderMonitors& m_fallback;
  FileDescriptor m_inotify;
  std::optional<QSocketNotifier> m_notifier;  // after the descriptor that it listens on
  std::map<int, Watch> m_watches;             // by watch descriptor
  bool m_isThere = false;
  bool m_isExhausted = false;
  std::unique_ptr<FolderMonitor> m_substitute;
};

constexpr std::uint32_t selfEvents = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t wayEvents = IN_CREATE | IN_DELETE | IN_MOVE | IN_ATTRIB | selfEvents;
constexpr std::uint32_t folderEvents = wayEvents | IN_CLOSE_WRITE;

void InotifyFolderMonitor::readEvents() {
  alignas(inotify_event) std::array<char, 65536> buffer;
  const ssize_t size = ::read(m_inotify.number(), buffer.data(), buffer.size());
  if (size <= 0) return;  // what is left makes the notifier speak again
  const News news = newsOf(buffer.data(), static_cast<std::size_t>(size));
  const bool wasThere = m_isThere;
  if (news.isOfWay) arm();
  if (news.isOfFolder || (news.isOfWay && (wasThere || m_isThere))) {
    const auto folderDidChange = m_folderDidChange;  // the call may end this monitor
    folderDidChange();
  }
}

InotifyFolderMonitor::News InotifyFolderMonitor::newsOf(const char* events, std::size_t size) const {
  News news;
  for (std::size_t offset = 0; offset + sizeof(inotify_event) <= size;) {
    inotify_event event;
    std::memcpy(&event, events + offset, sizeof event);
    collect(event, event.len > 0 ? events + offset + sizeof event : "", news);
    offset += sizeof event + event.len;
  }
  return news;
}

void InotifyFolderMonitor::collect(const inotify_event& event, const char* name, News& news) const {
  if ((event.mask & IN_Q_OVERFLOW) != 0) {
    news = {.isOfFolder = true, .isOfWay = true};
    return;
  }
  const auto watch = m_watches.find(event.wd);
  if (watch == m_watches.end()) return;  // an older one that is already taken off
  if ((event.mask & (selfEvents | IN_UNMOUNT | IN_IGNORED)) != 0) news.isOfWay = true;
  if (watch->second.names.count(name) > 0) news.isOfWay = true;
  if (watch->second.isFolder) news.isOfFolder = true;
}

/// Watches the way to the folder as it now is, and the folder if it is there.
void InotifyFolderMonitor::arm() {
  std::map<int, Watch> watches;
  const auto visit = [&](const fs::path& folder, const std::string& name) {
    const int watch = add(folder, wayEvents);
    if (watch >= 0) watches[watch].names.insert(name);
  };
  const auto folder = walkTo(m_folder, visit);
  m_isThere = folder.has_value();
  if (folder) {
    const int watch = add(*folder, folderEvents);
    if (watch >= 0) watches[watch].isFolder = true;
  }
  if (m_isExhausted) return fallBack();
  for (const auto& [watch, unused] : m_watches) {
    if (watches.count(watch) == 0) (void)::inotify_rm_watch(m_inotify.number(), watch);  // gone with its folder, or now
  }
  m_watches = std::move(watches);
}

/// The watch descriptor, or -1: the folder has just gone, which another watch will tell, or may not be read.
int InotifyFolderMonitor::add(const fs::path& folder, std::uint32_t events) {
  const int watch = ::inotify_add_watch(m_inotify.number(), folder.c_str(), events | IN_MASK_ADD | IN_ONLYDIR);
  if (watch < 0 && (errno == ENOSPC || errno == ENOMEM)) m_isExhausted = true;
  return watch;
}

void InotifyFolderMonitor::fallBack() {
  if (m_notifier) m_notifier->setEnabled(false);
  for (const auto& [watch, unused] : m_watches) (void)::inotify_rm_watch(m_inotify.number(), watch);
  m_watches.clear();
  m_substitute = m_fallback.watch(m_folder, m_folderDidChange);
}

}  // namespace

FileDescriptor InotifyFolderMonitors::openInotify() {
  return FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
}

std::unique_ptr<FolderMonitor> InotifyFolderMonitors::watch(const fs::path& folder,
                                                            std::function<void()> folderDidChange) {
  return std::make_unique<InotifyFolderMonitor>(folder, std::move(folderDidChange), m_open(), m_fallback);
}

}  // namespace mirvel::ui
