#pragma once

#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

/// One group of the catalogue: jobs of one kind.
struct Kind::Section {
  Kind kind;
  Jobs jobs;
};

using Sections = std::vector<Kind::Section>;

/// The groups of jobs in the order of the kinds, each in the order of the jobs. A kind without jobs has no group, nor
/// has one of the system's while system jobs aren't shown.
Sections makeSections(const Jobs& jobs, bool showSystemJobs);

}  // namespace mirvel
