#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel {

/// The sections of a launchd job, in the order of the details and the editor.
enum class StackSection {
  General,
  Runs,  ///< only in the details, and only while something is known of the job's runs
  When,
  Paths,
  Limits,
  Root,
  Miscellaneous,
  EnvironmentVariables,
  LaunchEvents,
  MachServices,
  Sockets,
  Deprecated,
  Unknown,
  Notes,
};

/// A section with its localized title.
struct StackEntry {
  StackSection section;
  std::optional<std::string> title;  ///< null for the first section, which has none

  bool operator==(const StackEntry&) const = default;
};

/// The sections of the read-only details: those with a key that the record has, even if its value is false, 0 or empty,
/// and always the general section and the notes.
std::vector<StackEntry> displayStack(const jobfile::Plist& plist, const Localize& localize);
/// The sections of the editor: all, but those of deprecated and of unknown keys only if the record has such keys.
std::vector<StackEntry> editStack(const jobfile::Plist& plist, const Localize& localize);

/// Whether the details show an opaque value in a browser, and so not as unknown.
bool isInBrowser(const jobfile::OpaqueValue& value);

}  // namespace mirvel
