#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace mirvel::lint {

/// How many letters must be changed, added, taken out or swapped with their neighbour to make one text of the other.
/// Upper and lower case count as the same, in ASCII.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The candidate that was most likely meant by a misspelt name, if one is close enough: one slip for each five letters,
/// and at least one. Nothing for a name that is itself a candidate.
std::optional<std::string_view> suggestion(std::string_view name, std::span<const std::string_view> candidates);

/// "; did you mean Label?", or nothing.
std::string suggestionText(std::string_view name, std::span<const std::string_view> candidates);

}  // namespace mirvel::lint
