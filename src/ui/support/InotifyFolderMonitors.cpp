#include "ui/support/InotifyFolderMonitors.h"

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

/// One inotify instance: a watch on the folder, and one on each folder on the way to it, of whose entries only the next
/// on the way counts.
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
constexpr std::uint32_t wayEvents = IN_CREATE | IN_DELETE | IN_MOVE | IN_ATTRIB | selfEvents;
constexpr std::uint32_t folderEvents = wayEvents | IN_CLOSE_WRITE;

void InotifyFolderMonitor::readEvents() {
  News news;
  for (const Inotify::Event& event : m_inotify.read()) collect(event, news);  // the notifier reports again what is left
  const bool wasThere = m_isThere;
  if (news.isOfWay) arm();
  if (news.isOfFolder || (news.isOfWay && (wasThere || m_isThere))) {
    const auto folderDidChange = m_folderDidChange;  // the call may end this monitor
    folderDidChange();
  }
}

void InotifyFolderMonitor::collect(const Inotify::Event& event, News& news) const {
  if ((event.mask & IN_Q_OVERFLOW) != 0) {
    news = {.isOfFolder = true, .isOfWay = true};
    return;
  }
  const auto watch = m_watches.find(event.watch);
  if (watch == m_watches.end()) return;  // an older one that is already taken off
  if ((event.mask & (selfEvents | IN_UNMOUNT | IN_IGNORED)) != 0) news.isOfWay = true;
  if (watch->second.names.count(event.name) > 0) news.isOfWay = true;
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
    if (watches.count(watch) == 0) m_inotify.remove(watch);  // gone with its folder, or now
  }
  m_watches = std::move(watches);
}

/// The watch descriptor, or -1: the folder has just gone, which another watch will tell, or may not be read.
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
