#pragma once

#include <cstddef>
#include <limits>
#include <optional>

#include "core/catalogue/KindSection.h"

namespace mirvel {

/// The position of a job among groups of jobs, or that of a group itself.
struct IndexPath {
  /// In place of an item: the group itself.
  static constexpr std::size_t group = std::numeric_limits<std::size_t>::max();

  std::size_t section = 0;
  std::size_t item = group;

  bool operator==(const IndexPath&) const = default;
};

class Catalogue;
class Defaults;

/// The jobs grouped by kind, as grid and tree show them. For the main thread.
class JobSections {
 public:
  /// Both outlive it.
  JobSections(const Catalogue& catalogue, const Defaults& defaults) : m_catalogue(catalogue), m_defaults(defaults) {}

  /// Takes new jobs. False if they are equal to the old ones and have the same URLs: then the groups stay, and only the
  /// jobs in them are replaced.
  bool update(const Jobs& jobs);

  /// The groups, at first those of the catalogue at the time of the first call.
  const Sections& all() const;
  /// Null beyond the groups, and for a group itself.
  std::shared_ptr<Job> job(IndexPath path) const;
  /// The first job at this URL.
  std::optional<IndexPath> find(const URL& url) const;
  /// This very job.
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
