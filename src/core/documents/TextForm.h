#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mirvel {

/// How the lines of a text end.
enum class LineEnd { Unix, Windows, Mac, Mixed };

/// How a text ends and indents its lines. A text of one line ends them as Unix does.
struct TextForm {
  LineEnd lineEnd = LineEnd::Unix;
  bool indentsByTabs = true;
  int indentation = 4;  ///< columns of one step, if lines are indented by spaces
  /// The first line names an interpreter and ends with "\r\n": the system then looks for an interpreter whose name ends
  /// with a carriage return.
  bool hasUnusableInterpreter = false;

  bool operator==(const TextForm&) const = default;

  /// Lines are indented as most of the first thousand indented lines are, and by tabs if there are none.
  static TextForm of(std::string_view text);
};

/// The text with all lines ending alike: with "\n" for `Mixed`.
std::string withLineEnds(std::string_view text, LineEnd lineEnd);

}  // namespace mirvel
