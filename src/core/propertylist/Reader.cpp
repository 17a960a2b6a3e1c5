#include "core/propertylist/Reader.h"

#include "core/propertylist/BinaryReader.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/ReadFailure.h"
#include "core/propertylist/XmlReader.h"

namespace mirvel::plist {

namespace {

Error binaryError(const ReadFailure& failure) {
  return {.code = failure.code, .message = failure.message, .offset = failure.offset};
}

Error xmlError(const ReadFailure& failure, std::string_view text) {
  const Place place = placeOf(text, failure.offset);
  return {.code = failure.code, .message = failure.message, .line = place.line, .column = place.column};
}

Result<Document> readBinary(std::string_view bytes) {
  try {
    BinaryReader reader(bytes);
    Value value = reader.read();
    return Document{.value = std::move(value), .format = Format::Binary, .warnings = reader.takeWarnings()};
  } catch (const ReadFailure& failure) {
    return binaryError(failure);
  }
}

Result<Document> readXml(std::string_view bytes, Positions* positions) {
  DecodedText text;
  if (const auto decoded = decodeText(bytes, text); !decoded) return decoded.error();
  try {
    XmlReader reader(text.utf8, positions);
    Value value = reader.read();
    Document document{.value = std::move(value), .format = Format::Xml, .warnings = reader.takeWarnings()};
    if (text.notAscii) {
      const Place place = placeOf(bytes, *text.notAscii);
      document.warnings.push_back({.message = "the list calls itself ASCII, but it isn't; it is read as Latin-1",
                                   .line = place.line,
                                   .column = place.column});
    }
    return document;
  } catch (const ReadFailure& failure) {
    return xmlError(failure, text.utf8);
  }
}

}  // namespace

std::string Warning::text() const {
  return Error{.code = Error::Code::Malformed, .message = message, .line = line, .column = column, .offset = offset}
      .text();
}

Result<Document> read(std::string_view bytes, Positions* positions) {
  if (positions) positions->clear();
  if (bytes.empty()) return Error{.code = Error::Code::Malformed, .message = "the file is empty"};
  if (BinaryReader::isBinary(bytes)) return readBinary(bytes);
  return readXml(bytes, positions);
}

}  // namespace mirvel::plist
