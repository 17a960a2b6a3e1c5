#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace mirvel::lint {

/// The number of insertions, deletions, substitutions and transpositions of adjacent bytes that turn one text into the
/// other (optimal string alignment). ASCII letters compare case-insensitively.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The closest candidate for a misspelt name, if its distance is at most a fifth of the name's length (at least 1).
/// Null if the name is itself a candidate, or longer than 64 bytes.
std::optional<std::string_view> suggestion(std::string_view name, std::span<const std::string_view> candidates);

}  // namespace mirvel::lint
