#include "core/editor/SectionStack.h"

#include "core/editor/SectionKeys.h"

namespace mirvel {

namespace {

using jobfile::Plist;

// A key that is in the file is shown, be it false, 0 or empty.
template <typename... Fields>
bool isAnySet(const Fields&... fields) {
  return (fields.has_value() || ...);
}

bool isShown(StackSection section, const Plist& plist) {
  switch (section) {
    case StackSection::when:
      return isAnySet(plist.runAtLoad, plist.keepAlive, plist.startOnMount) || plist.isScheduled();
    case StackSection::paths:
      return SectionKeys::Paths::isAnySet(plist) || SectionKeys::PathLists::isAnySet(plist);
    case StackSection::limits:
      return SectionKeys::Limits::isAnySet(plist);
    case StackSection::root:
      return SectionKeys::Root::isAnySet(plist);
    case StackSection::miscellaneous:
      return SectionKeys::Miscellaneous::isAnySet(plist);
    case StackSection::environmentVariables:
      return plist.environmentVariables && !plist.environmentVariables->empty();
    case StackSection::launchEvents:
      return isAnySet(plist.launchEvents);
    case StackSection::machServices:
      return isAnySet(plist.machServices);
    case StackSection::sockets:
      return isAnySet(plist.sockets);
    case StackSection::deprecated:
      return SectionKeys::Deprecated::isAnySet(plist);
    case StackSection::unknown:
      return isAnySet(plist.unknownKeys) || !plist.opaqueValues().empty();
    case StackSection::general:
    case StackSection::notes:
      return true;
  }
  return false;
}

std::vector<StackEntry> allSections(const Localize& localize) {
  return {{StackSection::general, std::nullopt},
          {StackSection::when, localize.when()},
          {StackSection::paths, localize.paths()},
          {StackSection::limits, localize.limits()},
          {StackSection::root, "root"},
          {StackSection::miscellaneous, localize.miscellaneous()},
          {StackSection::environmentVariables, "EnvironmentVariables"},
          {StackSection::launchEvents, "LaunchEvents"},
          {StackSection::machServices, "MachServices"},
          {StackSection::sockets, "Sockets"},
          {StackSection::deprecated, localize.deprecated()},
          {StackSection::unknown, localize.unknown()},
          {StackSection::notes, localize.notes()}};
}

}  // namespace

std::vector<StackEntry> displayStack(const Plist& plist, const Localize& localize) {
  auto result = allSections(localize);
  std::erase_if(result, [&](const StackEntry& entry) { return !isShown(entry.section, plist); });
  return result;
}

std::vector<StackEntry> editStack(const Plist& plist, const Localize& localize) {
  auto result = allSections(localize);
  std::erase_if(result, [&](const StackEntry& entry) {
    const bool hasCondition = entry.section == StackSection::deprecated || entry.section == StackSection::unknown;
    return hasCondition && !isShown(entry.section, plist);
  });
  return result;
}

}  // namespace mirvel
