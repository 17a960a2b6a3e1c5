#pragma once

#include <vector>

#include "core/editor/KeyValueItem.h"
#include "core/editor/SectionStack.h"
#include "core/jobfile/Plist.h"
#include "core/session/Foundation.h"

namespace mirvel {

/// What a section shows where its keys can only be read. Lists are one text of several lines. None for the sections
/// that show their keys in other ways: general, when and notes.
std::vector<KeyValueItem> sectionRows(StackSection section, const jobfile::Plist& plist, const Foundation& foundation);

}  // namespace mirvel
