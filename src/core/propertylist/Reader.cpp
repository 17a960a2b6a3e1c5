#include "core/propertylist/Reader.h"

#include <cstring>
#include <utility>

#include "core/files/ReadFile.h"
#include "core/propertylist/BinaryReader.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/ReadFailure.h"
#include "core/propertylist/XmlReader.h"

namespace mirvel::propertylist {

namespace {

Error binaryError(const ReadFailure& failure) {
  return {.code = failure.code, .message = failure.message, .offset = failure.offset};
}

/// The reader counts in offsets; lines are counted only now, when something went wrong.
Error xmlError(const ReadFailure& failure, std::string_view text) {
  const Position place = positionOf(text, failure.offset);
  return {.code = failure.code, .message = failure.message, .line = place.line, .column = place.column};
}

std::string_view copyPadded(std::string_view text, Arena& arena) {
  char* const to = arena.allocate(text.size() + XmlScanner::padding.size());
  std::memcpy(to, text.data(), text.size());
  std::memcpy(to + text.size(), XmlScanner::padding.data(), XmlScanner::padding.size());
  return {to, text.size()};
}

/// Enough for a text of this size and, in nearly all lists, its nodes, so that the arena needs a single block.
std::size_t expectedSize(std::size_t text) {
  return text + text / 4 + 256;
}

Warning notAsciiWarning(std::string_view bytes, std::size_t offset) {
  const Position place = positionOf(bytes, offset);
  return {.message = "the list is declared as ASCII but contains other bytes; it is read as Latin-1",
          .line = place.line,
          .column = place.column};
}

Result<Document> readBinary(std::string_view bytes) {
  Arena arena;
  BinaryReader reader(arena.copy(bytes), arena);
  try {
    const Node root = reader.read();
    return Document(std::move(arena), root, Format::Binary, reader.takeWarnings());
  } catch (const ReadFailure& failure) {
    return binaryError(failure);
  }
}

Result<Document> readXml(std::string_view bytes, Positions* positions) {
  DecodedText decoded;
  if (const auto result = decodeText(bytes, decoded); !result) return result.error();
  // Text that wasn't converted is kept with its byte-order mark, so that `Document::source` is the whole input.
  const std::string_view whole = decoded.converted ? decoded.utf8 : bytes;
  Arena arena(expectedSize(whole.size()));
  const std::string_view kept = copyPadded(whole, arena);
  const std::string_view text = kept.substr(whole.size() - decoded.utf8.size());
  XmlReader reader(text, arena, positions);
  try {
    const Node root = reader.read();
    Warnings warnings = reader.takeWarnings();
    if (decoded.notAscii) warnings.list.push_back(notAsciiWarning(bytes, *decoded.notAscii));
    if (positions) positions->complete(text);
    return Document(std::move(arena), root, Format::Xml, std::move(warnings),
                    decoded.converted ? std::nullopt : std::optional(kept));
  } catch (const ReadFailure& failure) {
    if (positions) positions->clear();
    return xmlError(failure, text);
  }
}

/// The offset after the next `end`, or the end of the text.
std::size_t skipPast(std::string_view text, std::string_view end, std::size_t from) {
  const std::size_t at = text.find(end, from);
  return at == std::string_view::npos ? text.size() : at + end.size();
}

}  // namespace

Result<Document> read(std::string_view bytes, Positions* positions) {
  if (positions) positions->clear();
  if (bytes.empty()) return Error{.code = Error::Code::Malformed, .message = "the file is empty"};
  if (bytes.size() > Limits::bytes) {
    return Error{.code = Error::Code::LimitExceeded, .message = "the list is larger than a gibibyte"};
  }
  if (BinaryReader::isBinary(bytes)) return readBinary(bytes);
  return readXml(bytes, positions);
}

Result<Dictionary> readDictionary(std::string_view bytes) {
  const auto document = read(bytes);
  if (!document) return document.error();
  Value value = document->value();
  auto* const dictionary = value.as<Dictionary>();
  if (!dictionary) return Error{.code = Error::Code::WrongType, .message = "it isn't a dictionary"};
  return std::move(*dictionary);
}

Result<Dictionary> readDictionary(const std::filesystem::path& file, std::size_t maximumSize) {
  const auto bytes = readFile(file, maximumSize);
  if (!bytes) return bytes.error();
  auto dictionary = readDictionary(*bytes);
  if (dictionary) return dictionary;
  Error error = dictionary.error();
  error.file = file.string();
  return error;
}

bool hasComments(std::string_view bytes) {
  if (BinaryReader::isBinary(bytes)) return false;
  DecodedText decoded;
  if (!decodeText(bytes, decoded)) return false;
  const std::string_view text = decoded.utf8;
  std::size_t at = text.find('<');
  while (at < text.size()) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<!--")) return true;
    if (rest.starts_with("<![CDATA[")) {
      at = skipPast(text, "]]>", at);
    } else if (rest.starts_with("<?")) {
      at = skipPast(text, "?>", at);
    } else {
      ++at;
    }
    at = text.find('<', at);
  }
  return false;
}

}  // namespace mirvel::propertylist
