#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Operations on UTF-8 text. None of them fails or depends on the locale; ill-formed UTF-8 is tolerated. Functions that
/// return a view return a part of their argument.
namespace mirvel::String {

/// Quotes a path, or any text, for a command line, so that both a shell and `Text::separateCommand` read it as one
/// unchanged argument. Always quotes: with double quotes if possible, else with single quotes, else with double quotes
/// and backslashes: `"/a b"`, `'/a $b'`, `"/it's \$b"`.
std::string quote(std::string_view path);

/// The text itself if a shell reads it as one unchanged word, otherwise quoted: `/bin/ls`, `"a b"`, `""`.
std::string shellWord(std::string_view text);

/// The text in double quotes, with a backslash before each double quote and backslash. The syntax of strings in
/// AppleScript and in predicates of log(1), not in shells.
std::string quoteWithBackslashes(std::string_view text);

enum class Edge { Start, End, Both };

/// Removes spaces and tabs at an edge, and also line ends if `alsoNewline`.
std::string_view trim(std::string_view text, bool alsoNewline = false, Edge edge = Edge::Both);
/// Removes a piece at an edge, once at each, if it is there: "name" of "name.plist" without ".plist" at the end.
std::string_view chop(std::string_view text, std::string_view piece, Edge edge);

/// Splits at each separator. Never empty: "a::b" gives "a", "" and "b", and "" gives "".
std::vector<std::string_view> split(std::string_view text, char separator);

/// The last component of a path, ignoring slashes at the end: "b" of "/a/b" and "/a/b/", "/" of "/", "" of "".
std::string_view lastPathComponent(std::string_view path);
/// A file name without its extension: "a.b" of "a.b.c". A leading dot begins none, and nor does one at the end.
std::string_view withoutExtension(std::string_view name);

/// Replaces the path of the home folder by "~" wherever it occurs in the text as a path or the beginning of one, but
/// not within another path: with "/Users/x", "cp /Users/x/a /Users/xy" gives "cp ~/a /Users/xy".
std::string shortenHomeFolder(std::string text, std::string_view home);

/// The number of characters, which are Unicode code points. All limits on the length of texts count these.
std::size_t characterCount(std::string_view text);

/// The first `count` characters, or all if there are fewer.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// The longest beginning, or end, of the text that has at most this many bytes and doesn't split a character.
std::string_view firstBytes(std::string_view text, std::size_t most);
std::string_view lastBytes(std::string_view text, std::size_t most);

/// The text with U+FFFD for each byte that isn't part of well-formed UTF-8, cut off between two characters to at most
/// `most` bytes.
std::string readableText(std::string_view text, std::size_t most = std::string_view::npos);

/// Encodes every byte except ASCII letters, digits and the characters in `plain` as "%xx" with lower-case digits
/// (RFC 3986).
std::string percentEncoded(std::string_view text, std::string_view plain);

/// Capitalizes the first character.
std::string firstUppercased(std::string_view text);
/// Lowers the first character, for a phrase in the middle of a sentence.
std::string firstLowercased(std::string_view text);

/// The form in which texts are compared when searching: equal for texts that differ only in case or accents. To search,
/// fold text and query once and look for the latter in the former. "R\u00e9sum\u00e9" gives "resume".
std::string fold(std::string_view text);

}  // namespace mirvel::String
