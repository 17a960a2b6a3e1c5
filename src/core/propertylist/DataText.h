#pragma once

#include <string>
#include <string_view>

namespace mirvel::propertylist {

/// The content of a <data> element. Parsing never fails, but may lose something.
struct ParsedData {
  std::string bytes;
  bool hasJunk = false;       ///< characters that are neither base64 nor white space were skipped
  bool isIncomplete = false;  ///< the last group has fewer than four characters and was dropped
};

/// Decodes base64 as leniently as macOS: other characters are skipped, padding may occur anywhere and counts as zero
/// bits, and a last group of fewer than four characters is dropped. `fromBase64` in core/text is the strict decoder.
///
///     parseData("AAEC /w==")         // 00 01 02 ff
///     parseData("QU!FB")             // "AAA", hasJunk
ParsedData parseData(std::string_view text);

/// Appends base64 lines as the macOS writer breaks them: each is indented by `indent` tabs, at most 8, and together
/// with them is at most 76 columns wide, a tab counting as 8. Every line ends with a line feed; no bytes give no lines.
void appendDataLines(std::string& out, std::string_view bytes, std::size_t indent);

}  // namespace mirvel::propertylist
