#include "core/catalogue/KindSection.h"

#include <array>
#include <utility>

namespace mirvel {

Sections makeSections(const Jobs& jobs, bool showSystemJobs) {
  std::array<Jobs, Kind::allCases.size()> groups;
  for (const auto& job : jobs) groups.at(static_cast<std::size_t>(job->kind.rawValue())).push_back(job);
  Sections sections;
  for (const Kind kind : Kind::allCases) {
    Jobs& group = groups.at(static_cast<std::size_t>(kind.rawValue()));
    const bool isShown = showSystemJobs || !kind.isSystem();
    if (isShown && !group.empty()) sections.push_back({kind, std::move(group)});
  }
  return sections;
}

}  // namespace mirvel
