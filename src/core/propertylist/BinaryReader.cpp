#include "core/propertylist/BinaryReader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>

#include "core/propertylist/DateText.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/ReadFailure.h"

namespace mirvel::plist {

namespace {

constexpr std::uint64_t headerSize = 8;
constexpr std::uint64_t trailerSize = 32;

[[noreturn]] void fail(std::string message, std::uint64_t offset, Error::Code code = Error::Code::Malformed) {
  throw ReadFailure{.message = std::move(message), .offset = static_cast<std::size_t>(offset), .code = code};
}

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
}

/// Whether a number of `size` bytes can hold `value`.
bool holds(std::uint64_t size, std::uint64_t value) { return size >= 8 || value >> (8 * size) == 0; }

std::string hexByte(std::uint8_t byte) {
  constexpr std::string_view digits = "0123456789abcdef";
  return std::string("0x") + digits[byte >> 4U] + digits[byte & 15U];
}

}  // namespace

bool BinaryReader::isBinary(std::string_view bytes) { return bytes.substr(0, 6) == "bplist"; }

Value BinaryReader::read() {
  readTrailer();
  checkOffsets();
  const std::uint64_t size = m_bytes.size();
  m_objectsLeft = std::min<std::uint64_t>(Limits::objects, 4096 + 64 * size);
  m_bytesLeft = std::min(size + Limits::sharedBytes, (std::uint64_t{1} << 20U) + 256 * size);
  m_isOpen.resize(m_objectCount);
  m_frames.reserve(16);
  begin(m_topObject);
  while (!m_frames.empty()) {
    Frame& frame = m_frames.back();
    if (frame.next == frame.count) {
      finish();
    } else {
      begin(referenceAt(frame.references + m_referenceSize * frame.next++));
    }
  }
  return std::move(m_values.front());
}

void BinaryReader::readTrailer() {
  if (m_bytes.substr(0, 7) != "bplist0") fail("the version of the binary list isn't 0: `bplist0` was expected", 6);
  if (m_bytes.size() < headerSize + 1 + trailerSize) fail("the binary list ends before its trailer", m_bytes.size());
  const std::uint64_t trailer = m_bytes.size() - trailerSize;
  m_offsetSize = byteAt(trailer + 6);
  m_referenceSize = byteAt(trailer + 7);
  m_objectCount = bigEndian(trailer + 8, 8);
  m_topObject = bigEndian(trailer + 16, 8);
  m_table = bigEndian(trailer + 24, 8);

  if (m_offsetSize < 1 || m_offsetSize > 8) fail("the size of offsets isn't 1 to 8", trailer + 6);
  if (m_referenceSize < 1 || m_referenceSize > 8) fail("the size of references isn't 1 to 8", trailer + 7);
  if (m_objectCount < 1 || m_objectCount > trailer) fail("the object count doesn't fit the list", trailer + 8);
  if (m_topObject >= m_objectCount) fail("there is no top object of that number", trailer + 16);
  if (m_table <= headerSize || m_table > trailer || m_table + m_objectCount * m_offsetSize != trailer) {
    fail("the offset table doesn't lie between the objects and the trailer", trailer + 24);
  }
  if (!holds(m_referenceSize, m_objectCount)) fail("references are too small for the object count", trailer + 7);
  if (!holds(m_offsetSize, m_table)) fail("offsets are too small for the list", trailer + 6);
}

/// All offsets, even of objects that nothing names, must lie before the table, as macOS asks.
void BinaryReader::checkOffsets() const {
  for (std::uint64_t object = 0; object < m_objectCount; ++object) {
    if (bigEndian(m_table + object * m_offsetSize, m_offsetSize) < m_table) continue;
    fail("object " + std::to_string(object) + " lies outside the objects", m_table + object * m_offsetSize);
  }
}

std::uint64_t BinaryReader::bigEndian(std::uint64_t offset, std::uint64_t size) const {
  std::uint64_t number = 0;
  for (std::uint64_t i = 0; i < size; ++i) number = number << 8U | byteAt(offset + i);
  return number;
}

std::uint64_t BinaryReader::offsetOf(std::uint64_t object) const {
  const std::uint64_t entry = m_table + object * m_offsetSize;
  const std::uint64_t offset = bigEndian(entry, m_offsetSize);
  if (offset < headerSize) fail("object " + std::to_string(object) + " lies in the header", entry);
  return offset;
}

std::uint64_t BinaryReader::referenceAt(std::uint64_t offset) const {
  const std::uint64_t object = bigEndian(offset, m_referenceSize);
  if (object >= m_objectCount) fail("there is no object " + std::to_string(object), offset);
  return object;
}

void BinaryReader::countObject() {
  if (m_objectsLeft-- == 0) {
    fail("the list holds too many values for its size", m_bytes.size(), Error::Code::LimitExceeded);
  }
}

void BinaryReader::deliver(Value value) {
  countObject();
  m_values.push_back(std::move(value));
}

/// Counts text and data, which grow the list each time that they are named.
void BinaryReader::spend(std::uint64_t bytes, std::uint64_t offset) {
  if (bytes > m_bytesLeft) {
    fail("the list repeats too much text for its size", offset, Error::Code::LimitExceeded);
  }
  m_bytesLeft -= bytes;
}

void BinaryReader::begin(std::uint64_t object) {
  const std::uint64_t offset = offsetOf(object);
  switch (byteAt(offset) >> 4U) {
    case 0xA: return open(object, offset, Type::Array);
    case 0xC: return open(object, offset, Type::Set);
    case 0xD: return open(object, offset, Type::Dictionary);
    default: return deliver(scalar(offset));
  }
}

/// Content of `count` units, the count being in the low half of the marker, or in an integer object behind it.
BinaryReader::Extent BinaryReader::extent(std::uint64_t offset, std::uint64_t unit) const {
  Extent result{.start = offset + 1, .count = byteAt(offset) & 15U};
  if (result.count == 15) {
    if (result.start >= m_table || byteAt(result.start) >> 4U != 1) fail("the count of the object is no integer", offset);
    const std::uint64_t size = std::uint64_t{1} << (byteAt(result.start) & 15U);
    ++result.start;
    if (size > m_table - result.start) fail("the count of the object runs out of the list", offset);
    result.count = bigEndian(result.start, size);
    result.start += size;
  }
  if (result.count > (m_table - result.start) / unit) fail("the object runs out of the list", offset);
  return result;
}

Value BinaryReader::scalar(std::uint64_t offset) {
  const std::uint8_t marker = byteAt(offset);
  switch (marker >> 4U) {
    case 0x1: return integer(offset);
    case 0x2: return real(offset);
    case 0x4: return Data{std::string(content(offset, 1))};
    case 0x5:
    case 0x6: return string(offset);
    case 0x8: return uid(offset);
    default: break;
  }
  if (marker == 0x08) return false;
  if (marker == 0x09) return true;
  if (marker == 0x33) return date(offset);
  if (marker == 0x00) fail("null is no value of a property list", offset);
  fail("no object begins with " + hexByte(marker), offset);
}

Value BinaryReader::integer(std::uint64_t offset) {
  const unsigned exponent = byteAt(offset) & 15U;
  if (exponent > 4) fail("no integer begins with " + hexByte(byteAt(offset)), offset);
  const std::uint64_t size = std::uint64_t{1} << exponent;
  if (size >= m_table - offset) fail("the integer runs out of the list", offset);
  if (size < 8) return Integer::fromUnsigned(bigEndian(offset + 1, size));
  const std::uint64_t low = bigEndian(offset + 1 + size - 8, 8);
  if (size == 8) return Integer(static_cast<std::int64_t>(low));
  const std::uint64_t high = bigEndian(offset + 1, 8);
  const bool isNegative = high == std::numeric_limits<std::uint64_t>::max() && low >> 63U == 1;
  if (isNegative) return Integer(static_cast<std::int64_t>(low));
  if (high != 0) {
    m_warnings.push_back({.message = "the integer doesn't fit 64 bits; only the lower ones are read", .offset = offset});
  }
  return Integer::fromUnsigned(low);
}

Value BinaryReader::real(std::uint64_t offset) const {
  const std::uint8_t marker = byteAt(offset);
  const std::uint64_t size = marker == 0x22 ? 4 : 8;
  if (marker != 0x22 && marker != 0x23) fail("no real begins with " + hexByte(marker), offset);
  if (size >= m_table - offset) fail("the real runs out of the list", offset);
  const std::uint64_t bits = bigEndian(offset + 1, size);
  if (size == 4) return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
  return std::bit_cast<double>(bits);
}

Value BinaryReader::date(std::uint64_t offset) const {
  if (8 >= m_table - offset) fail("the date runs out of the list", offset);
  const Date result{std::bit_cast<double>(bigEndian(offset + 1, 8))};
  if (!isReadable(result)) fail("the date lies outside of any calendar", offset);
  return result;
}

Value BinaryReader::uid(std::uint64_t offset) const {
  const std::uint64_t size = (byteAt(offset) & 15U) + 1U;
  if (size >= m_table - offset) fail("the UID runs out of the list", offset);
  const std::uint64_t number = bigEndian(offset + 1, size);
  if (size > 8 || number > std::numeric_limits<std::uint32_t>::max()) fail("the UID doesn't fit 32 bits", offset);
  return Uid{static_cast<std::uint32_t>(number)};
}

std::string_view BinaryReader::content(std::uint64_t offset, std::uint64_t unit) {
  const Extent range = extent(offset, unit);
  spend(range.count * unit, offset);
  return m_bytes.substr(range.start, range.count * unit);
}

Value BinaryReader::string(std::uint64_t offset) {
  if (byteAt(offset) >> 4U == 6) return wideString(offset);
  const std::string_view text = content(offset, 1);
  if (isAscii(text)) return text;
  return utf8FromLatin1(text);
}

std::string BinaryReader::wideString(std::uint64_t offset) {
  auto text = utf8FromUtf16BigEndian(content(offset, 2));
  if (!text) fail("the string holds half of a surrogate pair", offset);
  return *std::move(text);
}

void BinaryReader::open(std::uint64_t object, std::uint64_t offset, Type type) {
  if (m_isOpen[object]) fail("object " + std::to_string(object) + " holds itself", offset);
  if (m_frames.size() == Limits::depth) {
    fail("arrays and dictionaries lie more than " + std::to_string(Limits::depth) + " deep in each other", offset,
         Error::Code::LimitExceeded);
  }
  const std::uint64_t unit = type == Type::Dictionary ? 2 * m_referenceSize : m_referenceSize;
  const Extent range = extent(offset, unit);
  const std::uint64_t keysSize = type == Type::Dictionary ? range.count * m_referenceSize : 0;
  const Frame frame{.type = type,
                    .object = object,
                    .references = range.start + keysSize,
                    .count = range.count,
                    .next = 0,
                    .firstValue = m_values.size(),
                    .firstKey = m_keys.size()};
  m_isOpen[object] = true;
  m_frames.push_back(frame);
  if (type == Type::Dictionary) readKeys(frame, range.start);
}

void BinaryReader::readKeys(const Frame& frame, std::uint64_t references) {
  for (std::uint64_t i = 0; i < frame.count; ++i) {
    countObject();
    const std::uint64_t reference = references + i * m_referenceSize;
    m_keys.push_back({key(referenceAt(reference)), static_cast<std::size_t>(reference)});
  }
}

std::string_view BinaryReader::key(std::uint64_t object) {
  const std::uint64_t offset = offsetOf(object);
  const unsigned kind = byteAt(offset) >> 4U;
  if (kind == 6) return m_decodedKeys.emplace_back(wideString(offset));
  if (kind != 5) fail("a dictionary's key is no string", offset);
  const std::string_view text = content(offset, 1);
  return isAscii(text) ? text : m_decodedKeys.emplace_back(utf8FromLatin1(text));
}

void BinaryReader::finish() {
  const Frame frame = m_frames.back();
  m_frames.pop_back();
  m_isOpen[frame.object] = false;
  const auto first = m_values.begin() + static_cast<std::ptrdiff_t>(frame.firstValue);
  Value value;
  if (frame.type == Type::Dictionary) {
    value = m_builder.build(std::span(m_keys).subspan(frame.firstKey), std::span(first, m_values.end()));
    for (const ReadKey& repeated : m_builder.repeatedKeys()) {
      m_warnings.push_back({.message = "the key `" + std::string(repeated.text) + "` is repeated; the first one counts",
                            .offset = repeated.offset});
    }
    m_keys.resize(frame.firstKey, {});
  } else {
    Array elements(std::make_move_iterator(first), std::make_move_iterator(m_values.end()));
    value = frame.type == Type::Set ? Value(Set{std::move(elements)}) : Value(std::move(elements));
  }
  m_values.erase(first, m_values.end());
  deliver(std::move(value));
}

}  // namespace mirvel::plist
