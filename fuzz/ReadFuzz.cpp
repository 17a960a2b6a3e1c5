#include <string_view>

#include "Check.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

using namespace mirvel;

/// Whatever is read is written in both forms and read again, as the same list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  plist::Positions positions;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto document = plist::read(bytes, &positions);
  if (!document) {
    FUZZ_CHECK(!document.error().message.empty());
    return 0;
  }
  const plist::Value value = document->value();

  const auto binary = plist::read(plist::writeBinary(value));
  FUZZ_CHECK(binary && binary->value() == value);

  const auto xml = plist::writeXml(value);
  if (!xml) return 0;  // a set
  const auto again = plist::read(*xml);
  FUZZ_CHECK(again);
  // Not the values are compared, since a date loses its fraction of a second in XML.
  const auto xmlAgain = plist::writeXml(again->value());
  FUZZ_CHECK(xmlAgain && *xmlAgain == *xml);
  return 0;
}
