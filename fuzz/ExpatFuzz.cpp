#include <expat.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>

#include "Check.h"
#include "Leniency.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"

using namespace mirvel;

namespace {

bool hasRest(const propertylist::Document& document) {
  return std::any_of(document.warnings().begin(), document.warnings().end(), [](const propertylist::Warning& warning) {
    return warning.message.find("behind the end of the list") != std::string::npos;
  });
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
  std::fprintf(stderr, "our reader takes what expat refuses at byte %zu: %s\n", offset,
               XML_ErrorString(XML_GetErrorCode(parser.get())));
  std::abort();
}
