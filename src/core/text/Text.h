#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Command lines as text: quoting and splitting.
namespace mirvel::Text {

/// Splits a command line into arguments by the quoting rules of the shell (POSIX.1, Shell Command Language, 2.2):
///
/// - Spaces, tabs and line ends separate arguments.
/// - Single quotes preserve everything up to the next one.
/// - Double quotes preserve everything except a backslash before `$`, a backtick, `"`, a backslash or a line feed.
/// - Elsewhere, a backslash preserves the next character. A backslash before a line feed is removed together with it.
///
/// Nothing is expanded: variables, patterns, `~`, operators and comments are ordinary text.
///
/// Never fails: a missing closing quote is assumed at the end, and a backslash at the end is preserved. Never empty: a
/// text without arguments gives one empty argument.
///
///     separateCommand("rsync -a 'my files' \"$HOME\"")  // rsync, -a, my files, $HOME
std::vector<std::string> separateCommand(std::string_view text);

/// Whether the argument must be quoted, because `separateCommand` would otherwise change or split it.
bool needsQuotes(std::string_view argument);

/// Appends an argument to a command line, preceded by a space unless it is the first, and quoted if necessary, so that
/// `separateCommand` returns it unchanged. A shell may still expand variables in it; for a shell, use `String::quote`.
void appendArgument(std::string& command, std::string_view argument);

/// The characters of a command line that are neither quoted nor escaped, in order, with each separator as a space. For
/// finding shell operators and variables.
std::string unquotedPart(std::string_view text);

}  // namespace mirvel::Text
