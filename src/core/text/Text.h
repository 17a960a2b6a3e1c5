#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Command lines as text.
namespace mirvel::Text {

/// Splits a command line into its arguments by the quoting rules of the shell (POSIX.1, Shell Command Language, 2.2):
/// blanks, tabs and line ends separate; single quotes keep all as it stands; double quotes keep all but a backslash
/// before `$`, a backtick, `"`, a backslash or a line end; elsewhere a backslash keeps the next character; a backslash
/// before a line end vanishes with it. Nothing is expanded and nothing is an operator or a comment.
///
/// Never fails: a quote that isn't closed ends with the text, and a last backslash stands for itself. An empty text,
/// or one of separators alone, gives one empty element.
std::vector<std::string> separateCommand(std::string_view text);

/// Whether `separateCommand` would read the text as anything else than itself.
bool needsQuotes(std::string_view argument);

/// Adds an argument to a command line so that `separateCommand` reads it back: as it stands if it can, else in quotes.
void appendArgument(std::string& command, std::string_view argument);

/// What of a command line stands outside quotes and isn't escaped.
std::string unquotedPart(std::string_view text);

}  // namespace mirvel::Text
