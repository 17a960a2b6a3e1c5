#pragma once

#include <vector>

#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Collator.h"

/// The rows of the keys that hold whole trees: one for each name, sorted, with a line for each value below it.
namespace mirvel::NestedRows {

std::vector<KeyValueItem> launchEvents(const jobfile::LaunchEvents& events, const ValueTexts& texts,
                                       const Collator& collator);
std::vector<KeyValueItem> machServices(const jobfile::MachServices& services, const ValueTexts& texts,
                                       const Collator& collator);
std::vector<KeyValueItem> sockets(const jobfile::Sockets& all, const ValueTexts& texts, const Collator& collator);

/// In the order of their keys, names by the collator.
void sortByKey(std::vector<KeyValueItem>& rows, const Collator& collator);

}  // namespace mirvel::NestedRows
