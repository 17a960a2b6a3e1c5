#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel {

/// The sections of a launchd job, in the order in which they stand in the details and in the editor.
enum class StackSection {
  general,
  when,
  paths,
  limits,
  root,
  miscellaneous,
  environmentVariables,
  launchEvents,
  machServices,
  sockets,
  deprecated,
  unknown,
  notes,
};

struct StackEntry {
  StackSection section;
  std::optional<std::string> title;  ///< above the section; none has the first one

  bool operator==(const StackEntry&) const = default;
};

/// The sections that have something to say of the job.
std::vector<StackEntry> displayStack(const jobfile::Plist& plist, const Localize& localize);
/// The sections with which the job can be edited, and those with what can't be edited but removed.
std::vector<StackEntry> editStack(const jobfile::Plist& plist, const Localize& localize);

}  // namespace mirvel
