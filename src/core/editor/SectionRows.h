#pragma once

#include <string_view>
#include <vector>

#include "core/editor/SectionStack.h"
#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"

namespace mirvel {

struct Foundation;

/// The read-only rows of a section. A list is one text with a line for each element. Empty for the sections with views
/// of their own: general, when and notes.
std::vector<KeyValueItem> sectionRows(StackSection section, const jobfile::Plist& plist, const Foundation& foundation);

/// The same for the editor, where the browsers show the opaque values of their keys.
std::vector<KeyValueItem> editorRows(StackSection section, const jobfile::Plist& plist, const Foundation& foundation);

/// Removes a deprecated key from the record. Returns false if the key isn't deprecated or isn't set.
bool deleteDeprecated(jobfile::Plist& plist, std::string_view key);
/// Removes an unknown key, or the opaque value at a path such as "KeepAlive.Odd", so that the next save omits it.
/// Returns false if the record has neither.
bool deleteUnknown(jobfile::Plist& plist, std::string_view key);

}  // namespace mirvel
