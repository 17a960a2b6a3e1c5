#pragma once

#include <memory>

#include "core/ports/MainQueue.h"
#include "core/scan/FetchOperation.h"
#include "core/session/Busy.h"

namespace mirvel {

class Program;

/// Scans the machine's jobs and publishes what it finds. For the main thread; the scan itself runs on the fetch queue.
class Fetcher {
 public:
  explicit Fetcher(Program& program);
  ~Fetcher();
  Fetcher(const Fetcher&) = delete;
  Fetcher& operator=(const Fetcher&) = delete;

  /// Starts a scan, which takes the place of a running one. Not to be called while there are unsaved changes.
  void fetchJobs();
  /// Whether a scan has ended since the program started.
  bool hasScanned() const { return m_hasScanned; }
  /// Publishes another catalogue: shows it in the current mode, filtered, and reconciles the selection with it.
  void replaceJobs(Jobs jobs);
  /// Finds the selected job again in a catalogue that was replaced, gives the jobs their custom icons, and tells
  /// everybody.
  void jobsDidUpdate();

 private:
  void scanningChanged();
  void publish(FetchOperation& operation);
  void reconcileSelection();
  void matchIcons();

  struct Tools;

  Program& m_program;
  std::shared_ptr<Tools> m_tools;
  std::shared_ptr<FetchOperation> m_operation;
  Busy::Token m_scanning;
  bool m_hasScanned = false;
  Delay m_delay;
};

}  // namespace mirvel
