#pragma once

#include <string_view>
#include <vector>

#include "core/editor/SectionStack.h"
#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"

namespace mirvel {

struct Foundation;

/// The read-only rows of a section. Lists are one text of several lines. Empty for the sections that show their keys in
/// other ways: general, when and notes.
std::vector<KeyValueItem> sectionRows(StackSection section, const jobfile::Plist& plist, const Foundation& foundation);

/// Removes a deprecated key from the record. Returns false if the key isn't one, or isn't set.
bool deleteDeprecated(jobfile::Plist& plist, std::string_view key);
/// Marks for removal at the next save: a key that isn't known, or the path of an opaque value. Returns false if there
/// is none of that name.
bool deleteUnknown(jobfile::Plist& plist, std::string_view key);

}  // namespace mirvel
