#include "core/editor/SectionStack.h"

#include <algorithm>

#include "core/editor/EditorTexts.h"
#include "core/editor/Fields.h"

namespace mirvel {

namespace {

using jobfile::Plist;

/// A key that is in the file is shown, be it false, 0 or empty.
bool isAnyFieldSet(StackSection section, const Plist& plist) {
  const auto fields = fieldsOf(section);
  return std::any_of(fields.begin(), fields.end(), [&](const Field& field) { return field.access.isSet(plist); });
}

bool isShown(StackSection section, const Plist& plist) {
  switch (section) {
    case StackSection::when:
      return isAnyFieldSet(section, plist) || plist.isScheduled();
    case StackSection::paths:
    case StackSection::limits:
    case StackSection::root:
    case StackSection::miscellaneous:
    case StackSection::deprecated:
      return isAnyFieldSet(section, plist);
    case StackSection::environmentVariables:
      return plist.environmentVariables && !plist.environmentVariables->empty();
    case StackSection::launchEvents:
      return plist.launchEvents.has_value();
    case StackSection::machServices:
      return plist.machServices.has_value();
    case StackSection::sockets:
      return plist.sockets.has_value();
    case StackSection::unknown:
      return plist.unknownKeys.has_value() || !plist.opaqueValues().empty();
    case StackSection::general:
    case StackSection::notes:
      return true;
  }
  return false;
}

std::vector<StackEntry> allSections(const Localize& localize) {
  return {{StackSection::general, std::nullopt},
          {StackSection::when, localize.when()},
          {StackSection::paths, EditorTexts(localize).paths()},
          {StackSection::limits, EditorTexts(localize).limits()},
          {StackSection::root, "root"},
          {StackSection::miscellaneous, EditorTexts(localize).miscellaneous()},
          {StackSection::environmentVariables, "EnvironmentVariables"},
          {StackSection::launchEvents, "LaunchEvents"},
          {StackSection::machServices, "MachServices"},
          {StackSection::sockets, "Sockets"},
          {StackSection::deprecated, EditorTexts(localize).deprecated()},
          {StackSection::unknown, EditorTexts(localize).unknown()},
          {StackSection::notes, EditorTexts(localize).notes()}};
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
