#pragma once

#include <memory>

#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"
#include "core/scan/FetchOperation.h"
#include "core/session/Busy.h"

namespace mirvel {

class Catalogue;
class CurrentMode;
class Editing;
class ExtraFolders;
class Selection;
struct Foundation;
struct Notifications;
struct Platform;
struct Shell;

/// Starts scans and publishes their results to the catalogue, the current mode and the selection. For the main thread;
/// the scan itself runs on the fetch queue.
class Fetcher {
 public:
  /// All references must outlive this object. `scanning` is busy while a scan runs; results that arrive while `saving`
  /// is busy are dropped.
  Fetcher(const Foundation& foundation, const Platform& platform, ExtraFolders& extraFolders, Catalogue& catalogue,
          Selection& selection, CurrentMode& currentMode, Editing& editing, Notifications& notifications,
          const Shell& shell, Busy& scanning, const Busy& saving);
  /// Cancels a running scan. It may go on for a moment, with resources that it shares.
  ~Fetcher();
  Fetcher(const Fetcher&) = delete;
  Fetcher& operator=(const Fetcher&) = delete;

  /// Cancels a running scan and starts a new one, of the extra folders that answer. Must not be called while there are
  /// unsaved changes.
  void fetchJobs();
  /// Starts a scan, unless there are unsaved changes.
  void refresh();
  /// Whether any scan has been completed.
  bool hasScanned() const { return m_hasScanned; }

 private:
  void scanningChanged();
  void beginScan();
  void startOperation();
  void folderRecovered();
  /// Runs on the main thread when a scan has ended.
  void publish(FetchOperation& operation);
  /// Shows the jobs in the current mode, filtered, finds the selected job in them, assigns custom icons, and posts
  /// `jobsUpdated`.
  void replaceJobs(Jobs jobs);
  /// Lets the selection follow a file that another program has moved; see `findMoved`.
  void followMovedSelection(const Jobs& old);
  /// Selects the new object for the selected job, or nothing if the job has disappeared.
  void reconcileSelection();
  /// Assigns the custom icons, and redraws the selected job if its icon has changed.
  void matchIcons();

  struct Tools;

  const Foundation& m_foundation;
  const Platform& m_platform;
  ExtraFolders& m_extraFolders;
  Catalogue& m_catalogue;
  Selection& m_selection;
  CurrentMode& m_currentMode;
  Editing& m_editing;
  Notifications& m_notifications;
  const Shell& m_shell;
  Busy& m_busy;
  const Busy& m_saving;
  std::shared_ptr<Tools> m_tools;
  std::shared_ptr<FetchOperation> m_operation;  ///< the last scan that was started
  Busy::Token m_scanning;
  bool m_hasScanned = false;
  int m_scans = 0;           ///< that have been requested
  bool m_isLooking = false;  ///< at the extra folders; a scan will follow
  Delay m_delay;
  Subscription m_recovered;
};

/// Finds a job whose file another program has moved: the only launchd job among `newJobs` with the same label, at a
/// location that none of `oldJobs` had, while the file of `job` no longer exists. Null if there is none.
std::shared_ptr<Job> findMoved(const Job& job, const Jobs& oldJobs, const Jobs& newJobs);

}  // namespace mirvel
