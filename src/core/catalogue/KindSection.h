#pragma once

#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

/// A group of the catalogue: jobs of one kind.
struct Kind::Section {
  Kind kind;
  Jobs jobs;
};

using Sections = std::vector<Kind::Section>;

/// Groups jobs by kind, in the order of the kinds, keeping the order of jobs within a group. Omits empty groups, and
/// groups of the system unless `showSystemJobs` is set.
Sections makeSections(const Jobs& jobs, bool showSystemJobs);

}  // namespace mirvel
