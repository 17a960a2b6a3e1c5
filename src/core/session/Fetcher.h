#pragma once

#include <memory>

#include "core/ports/MainQueue.h"
#include "core/scan/FetchOperation.h"
#include "core/session/Busy.h"

namespace mirvel {

class Catalogue;
class CurrentMode;
class Editing;
class Selection;
struct Foundation;
struct Notifications;
struct Platform;
struct Shell;

/// Scans the machine's jobs and publishes what it finds. For the main thread; the scan itself runs on the fetch queue.
class Fetcher {
 public:
  /// All outlive it. It is `scanning` as long as a scan runs, and publishes nothing while something is `saving`.
  Fetcher(const Foundation& foundation, const Platform& platform, Catalogue& catalogue, Selection& selection,
          CurrentMode& currentMode, Editing& editing, Notifications& notifications, const Shell& shell, Busy& scanning,
          const Busy& saving);
  ~Fetcher();
  Fetcher(const Fetcher&) = delete;
  Fetcher& operator=(const Fetcher&) = delete;

  /// Starts a scan, which takes the place of a running one. Not to be called while there are unsaved changes.
  void fetchJobs();
  /// Starts a scan unless there are unsaved changes.
  void refresh();
  /// Whether a scan has ended since the program started.
  bool hasScanned() const { return m_hasScanned; }
  /// Publishes another catalogue: shows it in the current mode, filtered, and reconciles the selection with it.
  void replaceJobs(Jobs jobs);
  /// Finds the selected job again in a catalogue that was replaced, gives the jobs their custom icons, and posts
  /// `jobsUpdated`.
  void jobsDidUpdate();

 private:
  void scanningChanged();
  void publish(FetchOperation& operation);
  void followMovedSelection(const Jobs& old);
  void reconcileSelection();
  void matchIcons();

  struct Tools;

  const Foundation& m_foundation;
  const Platform& m_platform;
  Catalogue& m_catalogue;
  Selection& m_selection;
  CurrentMode& m_currentMode;
  Editing& m_editing;
  Notifications& m_notifications;
  const Shell& m_shell;
  Busy& m_busy;
  const Busy& m_saving;
  std::shared_ptr<Tools> m_tools;
  std::shared_ptr<FetchOperation> m_operation;
  Busy::Token m_scanning;
  bool m_hasScanned = false;
  Delay m_delay;
};

/// The job of a new catalogue whose file is that of a job of the old one, moved by another program: the only one with
/// its label, new at its place, while the old file is gone. Null if there is none.
std::shared_ptr<Job> findMoved(const Job& job, const Jobs& oldJobs, const Jobs& newJobs);

}  // namespace mirvel
