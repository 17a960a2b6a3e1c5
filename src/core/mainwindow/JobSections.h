#pragma once

#include <cstddef>
#include <limits>
#include <optional>

#include "core/catalogue/KindSection.h"

namespace mirvel {

/// The place of a job among groups of jobs, or that of a group itself.
struct IndexPath {
  /// Stands for a group in place of an item.
  static constexpr std::size_t group = std::numeric_limits<std::size_t>::max();

  std::size_t section = 0;
  std::size_t item = group;

  bool operator==(const IndexPath&) const = default;
};

class Program;

/// What a mode shows that groups the jobs by their kind. For the main thread.
class JobSections {
 public:
  explicit JobSections(const Program& program) : m_program(program) {}

  /// Takes other jobs. False: they are equal to those before, one by one and in the same places, so that the groups
  /// stay; only the jobs in them are now those given.
  bool update(const Jobs& jobs);

  /// The groups; at first those of the catalogue as it is when they are first asked for.
  const Sections& all() const;
  /// Null beyond the groups, and for a group itself.
  std::shared_ptr<Job> job(IndexPath path) const;
  /// Where the first job at this URL stands.
  std::optional<IndexPath> find(const URL& url) const;
  /// Where this very job stands.
  std::optional<IndexPath> find(const Job* job) const;

 private:
  struct Shown {
    Jobs content;
    bool showSystemJobs;
    Sections sections;
  };

  const Shown& shown() const;

  const Program& m_program;
  mutable std::optional<Shown> m_shown;
};

}  // namespace mirvel
