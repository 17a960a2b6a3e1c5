#include "core/propertylist/Comments.h"

#include "core/propertylist/Encoding.h"

namespace mirvel::propertylist {

namespace {

/// Just behind the next `end`, or the end of the text.
std::size_t behind(std::string_view text, std::string_view end, std::size_t from) {
  const std::size_t at = text.find(end, from);
  return at == std::string_view::npos ? text.size() : at + end.size();
}

}  // namespace

bool hasComments(std::string_view bytes) {
  if (bytes.starts_with("bplist")) return false;
  DecodedText decoded;
  if (!decodeText(bytes, decoded)) return false;
  const std::string_view text = decoded.utf8;
  std::size_t at = text.find('<');
  while (at < text.size()) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<!--")) return true;
    if (rest.starts_with("<![CDATA[")) {
      at = behind(text, "]]>", at);
    } else if (rest.starts_with("<?")) {
      at = behind(text, "?>", at);
    } else {
      ++at;
    }
    at = text.find('<', at);
  }
  return false;
}

}  // namespace mirvel::propertylist
