#include <expat.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "Check.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/XmlReader.h"

using namespace mirvel;

namespace {

/// Whether there is data after the list, or may be: its warning is the last one, so it can be among the unreported.
bool hasRest(const propertylist::Document& document) {
  return document.unreportedWarnings() > 0 ||
         std::any_of(document.warnings().begin(), document.warnings().end(),
                     [](const auto& warning) { return warning.message == propertylist::dataAfterList; });
}

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Whether the text contains U+FFFE or U+FFFF in UTF-8, which aren't XML characters.
bool hasNoCharacter(std::string_view text) {
  return text.find("\xEF\xBF\xBE") != std::string_view::npos || text.find("\xEF\xBF\xBF") != std::string_view::npos;
}

bool isLenientText(std::string_view text) {
  return std::any_of(text.begin(), text.end(), isControl) || text.find("]]>") != std::string_view::npos ||
         text.find("&#") != std::string_view::npos || hasNoCharacter(text);
}

/// Whether a tag contains more than its name, white space and slashes.
bool isLenientTag(std::string_view tag) {
  tag = tag.substr(1, tag.find('>') - 1);
  const std::size_t nameEnd = tag.find_first_of(" \t\r\n/", tag.front() == '/' ? 1 : 0);
  if (nameEnd == std::string_view::npos) return false;
  const std::string_view rest = tag.substr(nameEnd);
  return rest.find_first_not_of(" \t\r\n") != std::string_view::npos && rest != "/";
}

std::size_t endOf(std::string_view text, std::size_t at) {
  const auto closed = [&](std::string_view end, std::size_t from) {
    const std::size_t found = text.find(end, at + from);
    return found == std::string_view::npos ? text.size() : found + end.size();
  };
  const std::string_view rest = text.substr(at);
  if (rest.starts_with("<!--")) return closed("-->", 4);
  if (rest.starts_with("<![CDATA[")) return closed("]]>", 9);
  if (rest.starts_with("<?")) return closed("?>", 2);
  if (rest.starts_with("<")) return closed(">", 1);
  return std::min(text.find('<', at), text.size());
}

bool isMarkup(std::string_view construct) {
  return construct.starts_with("<!") || construct.starts_with("<?");
}

bool isLenient(std::string_view construct) {
  if (isMarkup(construct)) return true;
  return construct.starts_with("<") ? isLenientTag(construct) : isLenientText(construct);
}

/// Whether a quote may still be open after the construct, so that the parser reports an error only later.
bool mayLeaveQuoteOpen(std::string_view construct) {
  if (!construct.starts_with("<") || construct.starts_with("<!--") || construct.starts_with("<![")) return false;
  return isLenient(construct) && construct.find_first_of("\"'") != std::string_view::npos;
}

/// Whether macOS, and therefore our reader, is known to accept the construct at this offset of a list, although it
/// isn't well-formed XML:
/// - attributes of any form, since none has a meaning;
/// - any content of comments, processing instructions, XML declarations and DOCTYPEs, which may occur anywhere;
/// - control characters and `]]>` in text, and references to such characters;
/// - any content of <data>, for which our reader gives a warning.
/// `offset` is where the XML parser stopped, in the offending construct or after it.
bool isKnownLeniency(std::string_view text, std::size_t offset) {
  // The parser may stop at the first offending byte, inside the construct, or at the first byte after it.
  bool isData = false;
  for (std::size_t at = 0; at <= offset && at < text.size();) {
    const std::size_t end = endOf(text, at);
    const std::string_view construct = text.substr(at, end - at);
    if (mayLeaveQuoteOpen(construct) || (offset <= end && (isLenient(construct) || isData))) return true;
    isData = construct.starts_with("<data");
    at = end;
  }
  return false;
}

}  // namespace

/// Every XML list that our reader accepts is accepted by expat as well, except for the known leniencies of macOS.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto document = propertylist::read(bytes);
  if (!document || document->format() != propertylist::Format::Xml) return 0;

  propertylist::DecodedText decoded;
  FUZZ_CHECK(propertylist::decodeText(bytes, decoded));
  const std::string_view text = decoded.utf8;
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"), &XML_ParserFree);
  FUZZ_CHECK(parser);
  if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK) return 0;
  if (hasRest(*document)) return 0;  // reported as a warning: macOS stops after the first element

  const auto offset = static_cast<std::size_t>(std::max<XML_Index>(0, XML_GetCurrentByteIndex(parser.get())));
  if (isKnownLeniency(text, offset)) return 0;
  std::fprintf(stderr, "our reader accepts what expat rejects at byte %zu: %s\n", offset,
               XML_ErrorString(XML_GetErrorCode(parser.get())));
  std::abort();
}
