#include <string_view>

#include "Check.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

using namespace mirvel;

/// Whatever is read can be written in both formats and read back as the same list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  propertylist::Positions positions;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto document = propertylist::read(bytes, &positions);
  if (!document) {
    FUZZ_CHECK(!document.error().message.empty());
    return 0;
  }
  const propertylist::Value value = document->value();

  const auto binary = propertylist::read(propertylist::writeBinary(value));
  FUZZ_CHECK(binary && binary->value() == value);

  const auto xml = propertylist::writeXml(value);
  if (!xml) return 0;  // the list contains a set
  const auto again = propertylist::read(*xml);
  FUZZ_CHECK(again);
  // The output is compared instead of the values, because a date loses its fraction of a second in XML.
  const auto xmlAgain = propertylist::writeXml(again->value());
  FUZZ_CHECK(xmlAgain && *xmlAgain == *xml);
  return 0;
}
