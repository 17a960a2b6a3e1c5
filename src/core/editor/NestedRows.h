#pragma once

#include <vector>

#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Collator.h"

/// Read-only rows for keys whose values are trees: a row for each name, sorted, with a line for each value below it,
/// such as "SockType : dgram".
namespace mirvel::NestedRows {

/// A row for each stream. Deeper values are shown with the path below the event: "plugged / Match : On".
std::vector<KeyValueItem> launchEvents(const jobfile::LaunchEvents& events, const ValueTexts& texts,
                                       const Collator& collator);
std::vector<KeyValueItem> machServices(const jobfile::MachServices& services, const ValueTexts& texts,
                                       const Collator& collator);
std::vector<KeyValueItem> sockets(const jobfile::Sockets& all, const ValueTexts& texts, const Collator& collator);

/// Sorts rows by their keys in the locale's order.
void sortByKey(std::vector<KeyValueItem>& rows, const Collator& collator);

}  // namespace mirvel::NestedRows
