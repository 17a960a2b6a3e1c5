#include "ui/support/PlatformFolderMonitors.h"

#include <sys/inotify.h>

#include <QSocketNotifier>
#include <cerrno>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "ui/support/PathWalk.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

/// Has one inotify instance with a watch on the folder and on each folder along its path, of which only the entry that
/// the path continues with counts.
class InotifyFolderMonitor final : public FolderMonitor {
 public:
  InotifyFolderMonitor(fs::path folder, std::function<void()> folderDidChange, Inotify inotify,
                       FolderMonitors& fallback)
      : m_folder(std::move(folder)),
        m_folderDidChange(std::move(folderDidChange)),
        m_fallback(fallback),
        m_inotify(std::move(inotify)) {
    if (!m_inotify) {
      fallBack();
      return;
    }
    m_notifier.emplace(m_inotify.descriptor(), QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this] { readEvents(); });
    arm();
  }

 private:
  /// The meaning of a batch of events.
  struct News {
    bool isOfFolder = false;  ///< an entry of the folder has changed
    bool isOfPath = false;    ///< the path may lead to another folder now, or to none
  };
  struct Watch {
    std::set<std::string> names;  ///< the entries along the path
    bool isFolder = false;
  };

  void readEvents();
  void collect(const Inotify::Event& event, News& news) const;
  void arm();
  int add(const fs::path& folder, std::uint32_t events);
  void fallBack();

  fs::path m_folder;
  std::function<void()> m_folderDidChange;
  FolderMonitors& m_fallback;
  Inotify m_inotify;
  std::optional<QSocketNotifier> m_notifier;  // after the descriptor that it listens on
  std::map<int, Watch> m_watches;             // by watch descriptor
  bool m_isThere = false;
  bool m_isExhausted = false;
  std::unique_ptr<FolderMonitor> m_substitute;
};

constexpr std::uint32_t selfEvents = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t pathEvents = IN_CREATE | IN_DELETE | IN_MOVE | IN_ATTRIB | selfEvents;
constexpr std::uint32_t folderEvents = pathEvents | IN_CLOSE_WRITE;

void InotifyFolderMonitor::readEvents() {
  News news;
  for (const Inotify::Event& event : m_inotify.read())
    collect(event, news);  // the notifier reports unread events again
  const bool wasThere = m_isThere;
  if (news.isOfPath) arm();
  if (news.isOfFolder || (news.isOfPath && (wasThere || m_isThere))) {
    const auto folderDidChange = m_folderDidChange;  // a copy, since the call may destroy this monitor
    folderDidChange();
  }
}

void InotifyFolderMonitor::collect(const Inotify::Event& event, News& news) const {
  if ((event.mask & IN_Q_OVERFLOW) != 0) {
    news = {.isOfFolder = true, .isOfPath = true};
    return;
  }
  const auto watch = m_watches.find(event.watch);
  if (watch == m_watches.end()) return;  // an event of a watch that has been removed
  if ((event.mask & (selfEvents | IN_UNMOUNT | IN_IGNORED)) != 0) news.isOfPath = true;
  if (watch->second.names.count(event.name) > 0) news.isOfPath = true;
  if (watch->second.isFolder) news.isOfFolder = true;
}

/// Sets the watches for the current path and, if it exists, the folder.
void InotifyFolderMonitor::arm() {
  std::map<int, Watch> watches;
  const auto visit = [&](const fs::path& folder, const std::string& name) {
    const int watch = add(folder, pathEvents);
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
    if (watches.count(watch) == 0) m_inotify.remove(watch);  // fails if the kernel has removed it with its folder
  }
  m_watches = std::move(watches);
}

/// Returns a watch descriptor, or -1 if the folder can't be read or has just been removed, which the watch of its
/// parent reports.
int InotifyFolderMonitor::add(const fs::path& folder, std::uint32_t events) {
  const int watch = m_inotify.add(folder, events | IN_MASK_ADD | IN_ONLYDIR);
  if (watch < 0 && (errno == ENOSPC || errno == ENOMEM)) m_isExhausted = true;
  return watch;
}

void InotifyFolderMonitor::fallBack() {
  if (m_notifier) m_notifier->setEnabled(false);
  for (const auto& [watch, unused] : m_watches) m_inotify.remove(watch);
  m_watches.clear();
  m_substitute = m_fallback.watch(m_folder, m_folderDidChange);
}

}  // namespace

std::unique_ptr<FolderMonitor> InotifyFolderMonitors::watch(const fs::path& folder,
                                                            std::function<void()> folderDidChange) {
  return std::make_unique<InotifyFolderMonitor>(folder, std::move(folderDidChange), m_open(), m_fallback);
}

}  // namespace mirvel::ui
