#pragma once

#include <string>
#include <utility>
#include <vector>

namespace mirvel {
class Localize;
}

namespace mirvel::lint {

/// What a finding says, or the title of a fix, in a form that can be translated: one clause, without location and full
/// stop, as a format with "%@" for each argument.
struct Clause {
  const char* format = "";  ///< English, with typographic quotes and apostrophes; a literal
  std::vector<std::string> arguments = {};

  /// In English for a terminal, with straight quotes and apostrophes.
  std::string english() const;
  /// In the user's language, as part of a button or a menu.
  std::string title(const Localize& localize) const;
  /// In the user's language, as a sentence with a capital letter and a full stop: "Unknown key; did you mean Label?"
  std::string sentence(const Localize& localize) const;

  bool operator==(const Clause& other) const;
};

/// A clause whose format translators see. The argument must be a literal, or have been marked by `translatable`.
inline Clause clause(const char* format, std::vector<std::string> arguments = {}) {
  return {format, std::move(arguments)};
}

/// A clause that exists in English only, such as the message of a reader.
inline Clause untranslated(std::string text) {
  return {"%@", {std::move(text)}};
}

}  // namespace mirvel::lint
