#pragma once

#include <cstdint>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// Earlier contents of files, of which a limited number is kept for each file. Main thread only.
class RevisionHistory {
 public:
  RevisionHistory() = default;
  virtual ~RevisionHistory() = default;
  RevisionHistory(const RevisionHistory&) = delete;
  RevisionHistory& operator=(const RevisionHistory&) = delete;

  /// What would be deleted if only a number of revisions were kept for each file.
  struct Excess {
    std::int64_t revisions = 0;
    std::int64_t files = 0;  ///< that have such revisions

    Excess& operator+=(const Excess& other) {
      revisions += other.revisions;
      files += other.files;
      return *this;
    }
  };
  /// Fails if the history can't be read.
  virtual Result<Excess> countBeyond(std::int64_t number) const = 0;
  /// Removes the oldest revisions of each file beyond this number. What can't be read stays.
  virtual void removeBeyond(std::int64_t number) = 0;
};

using RevisionHistories = std::vector<RevisionHistory*>;

/// The sum for several histories.
inline Result<RevisionHistory::Excess> countBeyond(const RevisionHistories& histories, std::int64_t number) {
  RevisionHistory::Excess sum;
  for (const RevisionHistory* history : histories) {
    const auto excess = history->countBeyond(number);
    if (!excess) return excess.error();
    sum += *excess;
  }
  return sum;
}

}  // namespace mirvel
