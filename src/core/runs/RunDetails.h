#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/runs/JobRuns.h"

namespace mirvel {

class Localize;
class RunMoments;

/// What the details of a job say about its runs.
struct RunDetails {
  JobState state = JobState::Unknown;
  std::vector<std::string> lines = {};  ///< sentences, the most important one first; empty if nothing is known
  /// The run whose last output is worth showing: the last one has failed, and its output may be read without a
  /// password.
  std::optional<RunReport> failedRun = {};

  bool operator==(const RunDetails&) const = default;
};

/// `now` is in seconds since 1970.
RunDetails runDetails(const Job& job, const JobRuns& runs, const RunMoments& moments, double now,
                      const Localize& localize);

/// The first of those lines only; empty if nothing is known.
std::string runSummary(const Job& job, const JobRuns& runs, const RunMoments& moments, double now,
                       const Localize& localize);

/// The state as an icon, with its name as the description; none for `Unknown`.
std::optional<Image> stateImage(JobState state, const Localize& localize);

}  // namespace mirvel
