#pragma once

#include <cstddef>
#include <limits>
#include <optional>

#include "core/catalogue/KindSection.h"

namespace mirvel {

/// The position of a job among groups of jobs, or that of a group itself.
struct IndexPath {
  /// The value of `item` for the group itself.
  static constexpr std::size_t group = std::numeric_limits<std::size_t>::max();

  std::size_t section = 0;
  std::size_t item = group;

  bool operator==(const IndexPath&) const = default;
};

class Catalogue;
class Defaults;

/// The jobs grouped by kind, for grid and tree. For the main thread.
class JobSections {
 public:
  /// Both arguments must outlive this object.
  JobSections(const Catalogue& catalogue, const Defaults& defaults) : m_catalogue(catalogue), m_defaults(defaults) {}

  /// Replaces the jobs. Returns false if the rows stay the same (see `areEqual`): then only the jobs in the groups
  /// are replaced, and a change of the setting "show system jobs" takes effect with the next real change.
  bool update(const Jobs& jobs);

  /// The groups. Before the first `update`, those of the catalogue at the first call. Empty groups are left out.
  const Sections& all() const;
  /// Null if the path is out of range or refers to a group.
  std::shared_ptr<Job> job(IndexPath path) const;
  /// The position of the first job with this URL; none if there is no such job.
  std::optional<IndexPath> find(const URL& url) const;
  /// The position of this object; equal jobs don't count.
  std::optional<IndexPath> find(const Job* job) const;

 private:
  struct Shown {
    Jobs content;
    bool showSystemJobs;
    Sections sections;
  };

  const Shown& shown() const;

  const Catalogue& m_catalogue;
  const Defaults& m_defaults;
  mutable std::optional<Shown> m_shown;
};

}  // namespace mirvel
