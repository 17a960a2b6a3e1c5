#pragma once

#include <string>
#include <string_view>

namespace mirvel::propertylist {

struct ParsedData {
  std::string bytes;
  bool hasJunk = false;       ///< characters that are neither base64 nor white space were passed over
  bool isIncomplete = false;  ///< the last group lacks characters or padding, and is lost
};

/// The bytes in the text of a <data>, as macOS reads them: any other characters are passed over, padding may stand
/// anywhere and counts as zero bits, and a last group of fewer than four characters is dropped.
ParsedData parseData(std::string_view text);

/// Adds the lines of a <data> element's content, each ended by a line end, as the macOS writer indents and breaks them:
/// behind `indent` tabs, but never more than 8, and 76 columns long less 8 for each tab.
void appendDataLines(std::string& out, std::string_view bytes, std::size_t indent);

}  // namespace mirvel::propertylist
