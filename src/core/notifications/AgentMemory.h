#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <vector>

#include "core/notifications/FailureSeries.h"
#include "core/notifications/JobChanges.h"
#include "core/notifications/Notice.h"
#include "core/settings/Store.h"

namespace mirvel {

/// What the background agent remembers, in one file: the jobs that it knows, the series of failures, and the notices
/// that it couldn't send. All changes of one event are written together, so that none is lost or told twice when the
/// agent is killed. For one thread.
class AgentMemory {
 public:
  /// The number of unsent notices that are kept; of more, only the number.
  static constexpr std::size_t mostUnsent = 200;

  /// Reads the file, which needn't exist. Problems are reported to `troubles`, which must outlive this.
  AgentMemory(std::filesystem::path file, StoreTroubles& troubles);

  /// Whether no runs were known, as at the first start; until `setRunsKnown`.
  bool isNewToRuns() const { return m_isNewToRuns; }
  void setRunsKnown() { m_isNewToRuns = false; }

  std::set<Kind::Case> kinds = {};  ///< whose jobs are known; the jobs that are found first aren't new
  KnownJobs jobs = {};
  OwnChanges::Used usedNotes = {};
  FailureSeries failures = {};
  std::vector<Notice> unsent = {};  ///< the oldest first
  std::int64_t omitted = 0;         ///< changes that were dropped from `unsent`

  /// Adds to the unsent notices. Of too many, the oldest change is dropped and counted.
  void add(Notice notice);
  /// Writes everything. After a failure, which is reported, a later call tries again.
  void write();

 private:
  void readKinds();
  void readJobs();
  void readUsedNotes();
  void readUnsent();

  Store m_store;
  bool m_isNewToRuns;
};

}  // namespace mirvel
