#include "core/propertylist/BinaryReader.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "core/propertylist/DateText.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/ReadFailure.h"
#include "core/propertylist/RepeatedKeys.h"
#include "core/propertylist/Words.h"

namespace mirvel::propertylist {

namespace {

constexpr std::uint64_t headerSize = 8;
constexpr std::uint64_t trailerSize = 32;

[[noreturn]] void fail(std::string_view message, std::uint64_t offset, Error::Code code = Error::Code::Malformed) {
  throw ReadFailure{.message = std::string(message), .offset = static_cast<std::size_t>(offset), .code = code};
}

/// Whether a number of `size` bytes can hold `value`.
bool holds(std::uint64_t size, std::uint64_t value) {
  return size >= 8 || value >> (8 * size) == 0;
}

}  // namespace

bool BinaryReader::isBinary(std::string_view bytes) {
  return bytes.substr(0, 6) == "bplist";
}

Node BinaryReader::read() {
  readTrailer();
  readOffsets();
  Node root;
  if (readValue(m_topObject, root)) return root;
  while (!m_frames.empty()) readValues();
  return m_containers[0].node;
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

  if (m_offsetSize == 0) fail("offsets have no size", trailer + 6);
  if (m_referenceSize == 0) fail("references have no size", trailer + 7);
  if (m_objectCount < 1 || m_objectCount > trailer) fail("the object count doesn't fit the list", trailer + 8);
  if (m_topObject >= m_objectCount) fail("there is no top object of that number", trailer + 16);
  if (m_table <= headerSize || m_table > trailer || m_table + m_objectCount * m_offsetSize != trailer) {
    fail("the offset table doesn't lie between the objects and the trailer", trailer + 24);
  }
  if (!holds(m_referenceSize, m_objectCount)) fail("references are too small for the object count", trailer + 7);
  if (!holds(m_offsetSize, m_table)) fail("offsets are too small for the list", trailer + 6);
}

/// All offsets, even of objects that nothing names, must lie before the table, as macOS asks.
void BinaryReader::readOffsets() {
  m_objects = m_arena.row<Object>(m_objectCount);
  for (std::uint64_t object = 0; object < m_objectCount; ++object) {
    const std::uint64_t entry = m_table + object * m_offsetSize;
    const std::uint64_t offset = bigEndian(entry, m_offsetSize);
    if (offset >= m_table) fail("the offset here lies behind all objects", entry);
    m_objects[object] = {.offset = static_cast<std::uint32_t>(offset), .container = 0};
  }
}

std::uint64_t BinaryReader::offsetOf(std::uint64_t object) const {
  const std::uint64_t offset = m_objects[object].offset;
  if (offset < headerSize) fail("the offset here lies in the header", m_table + object * m_offsetSize);
  return offset;
}

std::uint64_t BinaryReader::objectAt(std::uint64_t reference) const {
  const std::uint64_t object = bigEndian(reference, m_referenceSize);
  if (object >= m_objectCount) fail("the reference here is to an object that doesn't exist", reference);
  return object;
}

/// The content of an object of `count` units, the count being in the low half of the marker or behind it.
inline BinaryReader::Extent BinaryReader::extent(std::uint64_t offset, std::uint64_t unit) const {
  constexpr std::uint8_t oneByteInteger = 0x10;
  Extent result{.start = offset + 1, .count = byteAt(offset) & 15U};
  if (result.count == 15) {
    // What lies behind the objects can be looked at, too: the offset table and the trailer.
    const bool isShort = byteAt(offset + 1) == oneByteInteger && offset + 3 <= m_table;
    result = isShort ? Extent{.start = offset + 3, .count = byteAt(offset + 2)} : longExtent(offset);
  }
  if (result.count > m_table || result.count * unit > m_table - result.start) {
    fail("the object runs out of the list", offset);
  }
  return result;
}

/// Reads a scalar, or finds a container that was read before. Otherwise opens the container, and gives false: the slot
/// is filled when the container is complete.
bool BinaryReader::readValue(std::uint64_t object, Node& slot) {
  const std::uint64_t offset = offsetOf(object);
  const unsigned kind = byteAt(offset) >> 4U;
  if (kind < 0xA) {
    const Node node = kind == 5 ? string(offset) : scalar(offset);  // most are strings
    grow(Limits::valueSize + node.byteCount());
    slot = node;
    return true;
  }
  if (m_objects[object].container != 0) {
    const Container& known = m_containers[m_objects[object].container - 1];
    if (!known.isComplete) fail("the container here holds itself", offset);
    slot = known.node;
    grow(known.size);
    return true;
  }
  if (kind != 0xA && kind != 0xC && kind != 0xD) fail("no object begins with " + hexByte(byteAt(offset)), offset);
  open(object, offset, kind == 0xA ? Type::Array : kind == 0xC ? Type::Set : Type::Dictionary);
  return false;
}

void BinaryReader::warn(std::string_view message, std::uint64_t offset) {
  if (m_warnings.list.size() == Limits::warnings) {
    ++m_warnings.unreported;
  } else {
    m_warnings.list.push_back({.message = std::string(message), .offset = offset});
  }
}

/// Counts what is read, which is more than the list holds where objects are shared.
void BinaryReader::grow(std::uint64_t size) {
  m_size += size;
  if (m_size > m_bytes.size() + Limits::objects * Limits::valueSize) {
    fail("the list grows too large where it repeats its objects", m_bytes.size(), Error::Code::LimitExceeded);
  }
}

void BinaryReader::open(std::uint64_t object, std::uint64_t offset, Type type) {
  if (m_frames.size() == Limits::depth) {
    fail("arrays and dictionaries lie more than " + std::to_string(Limits::depth) + " deep in each other", offset,
         Error::Code::LimitExceeded);
  }
  const std::uint64_t perValue = type == Type::Dictionary ? 2 : 1;
  const Extent range = extent(offset, perValue * m_referenceSize);
  // Containers whose references overlap may have far more slots in all than the list has bytes.
  m_slots += perValue * range.count;
  if (m_slots > m_bytes.size() + Limits::objects) {
    fail("the containers of the list overlap too often", offset, Error::Code::LimitExceeded);
  }
  Frame frame{.type = type,
              .container = static_cast<std::uint32_t>(m_containers.size()),
              .offset = offset,
              .references = range.start + (perValue - 1) * range.count * m_referenceSize,
              .slots = m_arena.row<Node>(perValue * range.count),
              .count = range.count,
              .next = 0,
              .outerSize = std::exchange(m_size, Limits::valueSize)};
  m_containers.push({.node = {}, .size = 0, .isComplete = false});
  m_objects[object].container = frame.container + 1;
  if (type == Type::Dictionary) readKeys(frame, range.start);
  m_frames.push(frame);
}

void BinaryReader::readKeys(Frame& frame, std::uint64_t references) {
  for (std::uint64_t i = 0; i < frame.count; ++i) {
    const std::uint64_t offset = offsetOf(objectAt(references + i * m_referenceSize));
    const unsigned kind = byteAt(offset) >> 4U;
    if (kind != 5 && kind != 6) fail("a dictionary's key is no string", offset);
    const Node key = string(offset);
    grow(Limits::valueSize + key.byteCount());  // at once: a long key that is named often takes time, too
    frame.slots[2 * i] = key;
  }
}

/// Reads on in the innermost open container, up to a container in it or to its end.
void BinaryReader::readValues() {
  const std::size_t index = m_frames.size() - 1;
  const bool isDictionary = m_frames[index].type == Type::Dictionary;
  for (;;) {
    Frame& frame = m_frames[index];
    if (frame.next == frame.count) return finish();
    const std::uint64_t at = frame.next++;
    Node& slot = frame.slots[isDictionary ? 2 * at + 1 : at];
    if (!readValue(objectAt(frame.references + at * m_referenceSize), slot)) return;
  }
}

void BinaryReader::finish() {
  const Frame& frame = m_frames.pop();
  Container& container = m_containers[frame.container];
  container.size = std::exchange(m_size, frame.outerSize);
  container.isComplete = true;
  switch (frame.type) {
    case Type::Dictionary:
      container.node = dictionary(frame);
      break;
    case Type::Set:
      container.node = Node::set({frame.slots, frame.count});
      break;
    default:
      container.node = Node::array({frame.slots, frame.count});
  }
  grow(container.size);
  if (m_frames.empty()) return;
  const Frame& outer = m_frames.back();
  const std::uint64_t at = outer.next - 1;
  outer.slots[outer.type == Type::Dictionary ? 2 * at + 1 : at] = container.node;
}

Node BinaryReader::dictionary(const Frame& frame) {
  const std::span entries(frame.slots, 2 * frame.count);
  const std::size_t count = dropRepeatedKeys(entries, Repeated::FirstWins, [&](std::string_view key) {
    warn("the key " + quoted(key) + " is repeated; the first one counts", frame.offset);
  });
  return Node::dictionary(frame.slots, count);
}

/// Of an object whose count is an integer object of its own, behind the marker.
BinaryReader::Extent BinaryReader::longExtent(std::uint64_t offset) const {
  const std::uint64_t integer = offset + 1;
  if (integer >= m_table || byteAt(integer) >> 4U != 1) fail("the count of the object is no integer", offset);
  const std::uint64_t size = std::uint64_t{1} << (byteAt(integer) & 15U);
  if (size > m_table - integer - 1) fail("the count of the object runs out of the list", offset);
  return {.start = integer + 1 + size, .count = bigEndian(integer + 1, size)};
}

Node BinaryReader::scalar(std::uint64_t offset) {
  const std::uint8_t marker = byteAt(offset);
  switch (marker >> 4U) {
    case 0x1:
      return integer(offset);
    case 0x2:
      return real(offset);
    case 0x4:
      return Node::data(content(offset, 1));
    case 0x5:
    case 0x6:
      return string(offset);
    case 0x8:
      return uid(offset);
    default:
      break;
  }
  if (marker == 0x08) return Node::boolean(false);
  if (marker == 0x09) return Node::boolean(true);
  if (marker == 0x33) return date(offset);
  if (marker == 0x00) fail("null is no value of a property list", offset);
  fail("no object begins with " + hexByte(marker), offset);
}

Node BinaryReader::integer(std::uint64_t offset) {
  const unsigned exponent = byteAt(offset) & 15U;
  if (exponent > 4) fail("no integer begins with " + hexByte(byteAt(offset)), offset);
  const std::uint64_t size = std::uint64_t{1} << exponent;
  if (size >= m_table - offset) fail("the integer runs out of the list", offset);
  if (size < 8) return Node::integer(Integer::fromUnsigned(bigEndian(offset + 1, size)));
  const std::uint64_t low = bigEndian(offset + 1 + size - 8, 8);
  if (size == 8) return Node::integer(static_cast<std::int64_t>(low));
  const std::uint64_t high = bigEndian(offset + 1, 8);
  const bool isNegative = high == std::numeric_limits<std::uint64_t>::max() && low >> 63U == 1;
  if (isNegative) return Node::integer(static_cast<std::int64_t>(low));
  if (high != 0) {
    warn("the integer doesn't fit 64 bits; only the lower ones are read", offset);
  }
  return Node::integer(Integer::fromUnsigned(low));
}

Node BinaryReader::real(std::uint64_t offset) const {
  const std::uint8_t marker = byteAt(offset);
  const std::uint64_t size = marker == 0x22 ? 4 : 8;
  if (marker != 0x22 && marker != 0x23) fail("no real begins with " + hexByte(marker), offset);
  if (size >= m_table - offset) fail("the real runs out of the list", offset);
  const std::uint64_t bits = bigEndian(offset + 1, size);
  if (size == 4) return Node::real(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits))));
  return Node::real(std::bit_cast<double>(bits));
}

Node BinaryReader::date(std::uint64_t offset) const {
  if (8 >= m_table - offset) fail("the date runs out of the list", offset);
  const Date result{std::bit_cast<double>(bigEndian(offset + 1, 8))};
  if (!isReadable(result)) fail("the date lies outside of any calendar", offset);
  return Node::date(result);
}

Node BinaryReader::uid(std::uint64_t offset) {
  const std::uint64_t size = (byteAt(offset) & 15U) + 1U;
  if (size >= m_table - offset) fail("the UID runs out of the list", offset);
  const std::uint64_t number = bigEndian(offset + 1, size);
  if (number > std::numeric_limits<std::uint32_t>::max()) fail("the UID doesn't fit 32 bits", offset);
  if (size > 8 && bigEndian(offset + 1, size - 8) != 0) {
    warn("the UID doesn't fit 64 bits; only the lower ones are read", offset);
  }
  return Node::uid({static_cast<std::uint32_t>(number)});
}

std::string_view BinaryReader::content(std::uint64_t offset, std::uint64_t unit) const {
  const Extent range = extent(offset, unit);
  return {m_bytes.data() + range.start, range.count * unit};
}

/// The text lies among the objects, so whole words can be looked at: the trailer follows.
bool BinaryReader::isAscii(std::string_view text) const {
  std::uint64_t all = 0;
  std::size_t at = 0;
  for (; text.size() - at >= words::size; at += words::size) all |= words::load(text.data() + at);
  all |= words::load(text.data() + at) & words::mask(text.size() - at);
  return (all & words::tops) == 0;
}

Node BinaryReader::string(std::uint64_t offset) {
  if (byteAt(offset) >> 4U == 6) return wideString(offset);
  const std::string_view text = content(offset, 1);
  if (isAscii(text)) return Node::string(text);
  return Node::string(m_arena.copy(utf8FromLatin1(text)));
}

Node BinaryReader::wideString(std::uint64_t offset) {
  const auto text = utf8FromUtf16BigEndian(content(offset, 2));
  if (!text) fail("the string holds half of a surrogate pair", offset);
  return Node::string(m_arena.copy(*text));
}

}  // namespace mirvel::propertylist
