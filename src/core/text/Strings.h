#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Small operations on UTF-8 text.
namespace mirvel::String {

/// Quotes a path (or any text) for a command line, always, so that `Text::separateCommand` and a shell both read it as
/// one argument and unchanged. The quotes are double ones if they serve, else single ones, else double ones with
/// backslashes: `"/a b"`, `'/a $b'`, `"/it's \$b"`.
std::string quote(std::string_view path);

/// As it is, if a shell takes it as one word that means itself; else quoted. Never empty.
std::string shellWord(std::string_view text);

/// In double quotes, with a backslash before each double quote and backslash, as AppleScript and the predicates of
/// log(1) have it.
std::string quoteWithBackslashes(std::string_view text);

/// Without blanks and tabs at both ends, and without line ends if `alsoNewline`.
std::string_view trim(std::string_view text, bool alsoNewline = false);

/// What follows the last slash; slashes at the end don't count: "b" of "/a/b" and of "/a/b/", "/" of "/", "" of "".
std::string_view lastPathComponent(std::string_view path);

/// With the home folder's path written as "~" wherever it stands in the text as a path of its own or the begin of one.
std::string shortenHomeFolder(std::string text, std::string_view home);

/// The number of characters, that is, of Unicode code points. This is what every rule on a text's length counts.
std::size_t characterCount(std::string_view text);

/// The first so many characters.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// The longest part at the text's beginning, or at its end, of at most so many bytes that cuts no character.
std::string_view firstBytes(std::string_view text, std::size_t most);
std::string_view lastBytes(std::string_view text, std::size_t most);

/// With every byte but ASCII letters, digits and the characters of `plain` as "%xx" (RFC 3986).
std::string percentEncoded(std::string_view text, std::string_view plain);

/// With its first letter in upper case.
std::string firstUppercased(std::string_view text);
/// With its first letter in lower case, as it stands in the middle of a sentence.
std::string firstLowercased(std::string_view text);

/// The form in which texts are compared for searching: equal for texts that differ in case or accents alone. Fold
/// text and query once each, then look for the one in the other.
std::string fold(std::string_view text);

}  // namespace mirvel::String
