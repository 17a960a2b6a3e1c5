#include "core/editor/SectionStack.h"

#include <algorithm>

#include "core/editor/EditorTexts.h"
#include "core/editor/Fields.h"

namespace mirvel {

namespace {

using jobfile::Plist;

/// Whether the record has a key of the section, even one that is false, 0 or empty.
bool isAnyFieldSet(StackSection section, const Plist& plist) {
  const auto fields = fieldsOf(section);
  return std::any_of(fields.begin(), fields.end(), [&](const Field& field) { return field.access.isSet(plist); });
}

bool hasOpaqueRows(const Plist& plist) {
  const auto values = plist.opaqueValues();
  return !std::all_of(values.begin(), values.end(), isInBrowser);
}

bool isShown(StackSection section, const Plist& plist) {
  switch (section) {
    case StackSection::When:
      return isAnyFieldSet(section, plist) || plist.isScheduled();
    case StackSection::Paths:
    case StackSection::Limits:
    case StackSection::Root:
    case StackSection::Miscellaneous:
    case StackSection::Deprecated:
      return isAnyFieldSet(section, plist);
    case StackSection::EnvironmentVariables:
      return plist.environmentVariables && !plist.environmentVariables->empty();
    case StackSection::LaunchEvents:
      return plist.launchEvents.has_value();
    case StackSection::MachServices:
      return plist.machServices.has_value();
    case StackSection::Sockets:
      return plist.sockets.has_value();
    case StackSection::Unknown:
      return plist.unknownKeys.has_value() || hasOpaqueRows(plist);
    case StackSection::General:
    case StackSection::Notes:
      return true;
    case StackSection::Runs:
      return false;
  }
  return false;
}

std::vector<StackEntry> allSections(const Localize& localize) {
  return {{StackSection::General, std::nullopt},
          {StackSection::When, localize.when()},
          {StackSection::Paths, EditorTexts(localize).paths()},
          {StackSection::Limits, EditorTexts(localize).limits()},
          {StackSection::Root, "root"},
          {StackSection::Miscellaneous, EditorTexts(localize).miscellaneous()},
          {StackSection::EnvironmentVariables, "EnvironmentVariables"},
          {StackSection::LaunchEvents, "LaunchEvents"},
          {StackSection::MachServices, "MachServices"},
          {StackSection::Sockets, "Sockets"},
          {StackSection::Deprecated, EditorTexts(localize).deprecated()},
          {StackSection::Unknown, EditorTexts(localize).unknown()},
          {StackSection::Notes, EditorTexts(localize).notes()}};
}

}  // namespace

bool isInBrowser(const jobfile::OpaqueValue& value) {
  return value.path.front() == Plist::text(Plist::CodingKeys::LaunchEvents);
}

std::vector<StackEntry> displayStack(const Plist& plist, const Localize& localize) {
  auto result = allSections(localize);
  std::erase_if(result, [&](const StackEntry& entry) { return !isShown(entry.section, plist); });
  return result;
}

std::vector<StackEntry> editStack(const Plist& plist, const Localize& localize) {
  auto result = allSections(localize);
  std::erase_if(result, [&](const StackEntry& entry) {
    const bool hasCondition = entry.section == StackSection::Deprecated || entry.section == StackSection::Unknown;
    return hasCondition && !isShown(entry.section, plist);
  });
  return result;
}

}  // namespace mirvel
