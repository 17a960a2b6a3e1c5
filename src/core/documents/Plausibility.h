#pragma once

#include <string_view>

namespace mirvel {

/// How much a text looks like one that people have written.
struct Plausibility {
  double score = -1;          ///< about 1 for text in a language of the table, less the more of it is odd
  const char* language = "";  ///< the one that fits best
};

/// Judges the characters of a text above U+007F; those below are the surroundings. A text without such characters has
/// the score 0. `favourite` is the language of the user, which wins if it fits as well as others. Thread-safe.
Plausibility plausibilityOf(std::u16string_view text, std::string_view favourite);

/// The share of the characters of a text that are ASCII without control characters, or in any alphabet. For text of
/// which not even the width of characters is known.
double shareOfKnownCharacters(std::u16string_view text);

}  // namespace mirvel
