#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/editor/BrowserSchema.h"
#include "core/session/BrowserItem.h"

namespace mirvel {

class Localize;

/// The items of a tree that a property list can't contain: without a name or a value, or with a name that another entry
/// has. New items never count.
namespace BrowserProblems {

/// Why an item can't be saved, not counting those below it; null if it can.
std::optional<std::string> at(const std::vector<BrowserItem>& siblings, std::size_t row, const BrowserLevel& level,
                              const Localize& localize);
/// Why the tree can't be saved; null if it can. Appends the rows of the first item with a problem to `path`.
std::optional<std::string> first(const std::vector<BrowserItem>& items, const BrowserLevel& level,
                                 const Localize& localize, std::vector<std::size_t>& path);

}  // namespace BrowserProblems

}  // namespace mirvel
