#include "core/propertylist/BinaryReader.h"

#include <bit>
#include <cmath>
#include <limits>

#include "core/propertylist/DateText.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/ReadFailure.h"
#include "core/propertylist/RepeatedKeys.h"
#include "core/propertylist/Words.h"

namespace mirvel::propertylist {

namespace {

constexpr std::uint64_t headerSize = 8;
constexpr std::uint64_t trailerSize = 32;

/// Whether a number of `size` bytes can represent `value`.
bool holds(std::uint64_t size, std::uint64_t value) {
  return size >= 8 || value >> (8 * size) == 0;
}

}  // namespace

bool BinaryReader::isBinary(std::string_view bytes) {
  return bytes.starts_with("bplist");
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
  if (!m_bytes.starts_with("bplist0")) fail("unsupported version of the binary format: expected `bplist0`", 6);
  if (m_bytes.size() < headerSize + 1 + trailerSize) fail("the binary list ends before its trailer", m_bytes.size());
  const std::uint64_t trailer = m_bytes.size() - trailerSize;
  m_offsetSize = byteAt(trailer + 6);
  m_referenceSize = byteAt(trailer + 7);
  m_objectCount = bigEndian(trailer + 8, 8);
  m_topObject = bigEndian(trailer + 16, 8);
  m_table = bigEndian(trailer + 24, 8);

  if (m_offsetSize == 0) fail("the offset size is 0", trailer + 6);
  if (m_referenceSize == 0) fail("the reference size is 0", trailer + 7);
  if (m_objectCount < 1 || m_objectCount > trailer) fail("the object count is 0 or larger than the list", trailer + 8);
  if (m_topObject >= m_objectCount) fail("the top object doesn't exist", trailer + 16);
  if (m_table <= headerSize || m_table > trailer || m_table + m_objectCount * m_offsetSize != trailer) {
    fail("the offset table isn't between the objects and the trailer", trailer + 24);
  }
  if (!holds(m_referenceSize, m_objectCount)) fail("references are too small for the object count", trailer + 7);
  if (!holds(m_offsetSize, m_table)) fail("offsets are too small for the list", trailer + 6);
}

/// Like macOS, rejects offsets beyond the objects even if nothing refers to them. `m_objects` is bounded by the size of
/// the list, since the trailer was checked to have room for the whole table.
void BinaryReader::readOffsets() {
  m_objects = m_arena.allocateArray<Object>(m_objectCount);
  for (std::uint64_t object = 0; object < m_objectCount; ++object) {
    const std::uint64_t entry = m_table + object * m_offsetSize;
    const std::uint64_t offset = bigEndian(entry, m_offsetSize);
    if (offset >= m_table) fail("the offset is beyond the objects", entry);
    m_objects[object] = {.offset = static_cast<std::uint32_t>(offset), .container = 0};
  }
}

std::uint64_t BinaryReader::offsetOf(std::uint64_t object) const {
  const std::uint64_t offset = m_objects[object].offset;
  if (offset < headerSize) fail("the offset is within the header", m_table + object * m_offsetSize);
  return offset;
}

std::uint64_t BinaryReader::objectAt(std::uint64_t reference) const {
  const std::uint64_t object = bigEndian(reference, m_referenceSize);
  if (object >= m_objectCount) fail("reference to an object that doesn't exist", reference);
  return object;
}

/// The content of an object of `count` units of `unit` bytes each. The count is in the low half of the marker or, if
/// that is 15, in an integer object after it.
inline BinaryReader::Extent BinaryReader::extent(std::uint64_t offset, std::uint64_t unit) const {
  constexpr std::uint8_t oneByteInteger = 0x10;
  Extent result{.start = offset + 1, .count = byteAt(offset) & 15U};
  if (result.count == 15) {
    // Reading beyond the last object is safe: the offset table and the trailer follow.
    const bool isShort = byteAt(offset + 1) == oneByteInteger && offset + 3 <= m_table;
    result = isShort ? Extent{.start = offset + 3, .count = byteAt(offset + 2)} : longExtent(offset);
  }
  if (result.count > m_table || result.count * unit > m_table - result.start) {
    fail("the object extends beyond the end of the objects", offset);
  }
  return result;
}

/// Reads a scalar, or looks up a container that was read before. Otherwise opens the container and returns false: the
/// slot is filled when the container is complete.
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
    if (!known.isComplete) fail("the container contains itself", offset);
    slot = known.node;
    grow(known.size);
    return true;
  }
  if (kind != 0xA && kind != 0xC && kind != 0xD) fail("invalid object marker " + hexByte(byteAt(offset)), offset);
  open(object, offset, kind == 0xA ? Type::Array : kind == 0xC ? Type::Set : Type::Dictionary);
  return false;
}

/// Adds to the size of the open container. Sharing can make it exponential: 40 nested arrays that contain the same
/// array twice have 2^40 values.
void BinaryReader::grow(std::uint64_t size) {
  m_size += size;
  if (m_size > m_bytes.size() + Limits::objects * Limits::valueSize) {
    fail("shared containers make the list too large", m_bytes.size(), Error::Code::LimitExceeded);
  }
}

void BinaryReader::open(std::uint64_t object, std::uint64_t offset, Type type) {
  if (m_frames.size() == Limits::depth) {
    failTooDeep(offset);
  }
  const std::uint64_t perValue = type == Type::Dictionary ? 2 : 1;
  const Extent range = extent(offset, perValue * m_referenceSize);
  // Containers may overlap in the file, so that their slots can be far more than the list has bytes.
  m_slots += perValue * range.count;
  if (m_slots > m_bytes.size() + Limits::objects) {
    fail("the containers overlap too much", offset, Error::Code::LimitExceeded);
  }
  Frame frame{.type = type,
              .container = static_cast<std::uint32_t>(m_containers.size()),
              .offset = offset,
              .references = range.start + (perValue - 1) * range.count * m_referenceSize,
              .slots = m_arena.allocateArray<Node>(perValue * range.count),
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
    if (kind != 5 && kind != 6) fail("the dictionary key isn't a string", offset);
    const Node key = string(offset);
    // Before the next key is read: converting a long shared key again and again takes time.
    grow(Limits::valueSize + key.byteCount());
    frame.slots[2 * i] = key;
  }
}

/// Continues with the innermost open container, until it opens another one or is complete.
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
    m_warnings.add(frame.offset, [&] { return "the key " + quoted(key) + " is repeated; the first one counts"; });
  });
  return Node::dictionary(frame.slots, count);
}

/// The content of an object whose count is an integer object after the marker.
BinaryReader::Extent BinaryReader::longExtent(std::uint64_t offset) const {
  const std::uint64_t integer = offset + 1;
  if (integer >= m_table || byteAt(integer) >> 4U != 1) fail("the count of the object isn't an integer", offset);
  const std::uint64_t size = std::uint64_t{1} << (byteAt(integer) & 15U);
  if (size > m_table - integer - 1) fail("the count of the object extends beyond the end of the objects", offset);
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
  if (marker == 0x00) fail("null isn't a property-list value", offset);
  fail("invalid object marker " + hexByte(marker), offset);
}

Node BinaryReader::integer(std::uint64_t offset) {
  const unsigned exponent = byteAt(offset) & 15U;
  if (exponent > 4) fail("invalid integer marker " + hexByte(byteAt(offset)), offset);
  const std::uint64_t size = std::uint64_t{1} << exponent;
  if (size >= m_table - offset) fail("the integer extends beyond the end of the objects", offset);
  // In this format numbers of fewer than eight bytes are unsigned.
  if (size < 8) return Node::integer(Integer::fromUnsigned(bigEndian(offset + 1, size)));
  const std::uint64_t low = bigEndian(offset + 1 + size - 8, 8);
  if (size == 8) return Node::integer(static_cast<std::int64_t>(low));
  const std::uint64_t high = bigEndian(offset + 1, 8);
  const bool isNegative = high == std::numeric_limits<std::uint64_t>::max() && low >> 63U == 1;
  if (isNegative) return Node::integer(static_cast<std::int64_t>(low));
  if (high != 0) {
    m_warnings.add(offset, [] { return "the integer doesn't fit into 64 bits; only the low 64 are read"; });
  }
  return Node::integer(Integer::fromUnsigned(low));
}

Node BinaryReader::real(std::uint64_t offset) const {
  const std::uint8_t marker = byteAt(offset);
  const std::uint64_t size = marker == 0x22 ? 4 : 8;
  if (marker != 0x22 && marker != 0x23) fail("invalid real marker " + hexByte(marker), offset);
  if (size >= m_table - offset) fail("the real extends beyond the end of the objects", offset);
  const std::uint64_t bits = bigEndian(offset + 1, size);
  if (size == 4) return Node::real(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits))));
  return Node::real(std::bit_cast<double>(bits));
}

Node BinaryReader::date(std::uint64_t offset) const {
  if (8 >= m_table - offset) fail("the date extends beyond the end of the objects", offset);
  const Date result{std::bit_cast<double>(bigEndian(offset + 1, 8))};
  if (!isReadable(result)) fail("the date is outside the supported range", offset);
  return Node::date(result);
}

Node BinaryReader::uid(std::uint64_t offset) {
  const std::uint64_t size = (byteAt(offset) & 15U) + 1U;
  if (size >= m_table - offset) fail("the UID extends beyond the end of the objects", offset);
  const std::uint64_t number = bigEndian(offset + 1, size);
  if (number > std::numeric_limits<std::uint32_t>::max()) fail("the UID doesn't fit into 32 bits", offset);
  if (size > 8 && bigEndian(offset + 1, size - 8) != 0) {
    m_warnings.add(offset, [] { return "the UID doesn't fit into 64 bits; only the low 64 are read"; });
  }
  return Node::uid({static_cast<std::uint32_t>(number)});
}

std::string_view BinaryReader::content(std::uint64_t offset, std::uint64_t unit) const {
  const Extent range = extent(offset, unit);
  return {m_bytes.data() + range.start, range.count * unit};
}

/// The text is among the objects, so whole words can be loaded beyond its end: the trailer follows.
bool BinaryReader::isAscii(std::string_view text) const {
  std::uint64_t all = 0;
  std::size_t at = 0;
  for (; text.size() - at >= words::size; at += words::size) all |= words::load(text.data() + at);
  all |= words::load(text.data() + at) & words::mask(text.size() - at);
  return (all & words::highBits) == 0;
}

Node BinaryReader::string(std::uint64_t offset) {
  if (byteAt(offset) >> 4U == 6) return wideString(offset);
  const std::string_view text = content(offset, 1);
  if (isAscii(text)) return Node::string(text);
  return Node::string(m_arena.copy(utf8FromLatin1(text)));
}

Node BinaryReader::wideString(std::uint64_t offset) {
  const auto text = utf8FromUtf16BigEndian(content(offset, 2));
  if (!text) fail("the string contains an unpaired surrogate", offset);
  return Node::string(m_arena.copy(*text));
}

}  // namespace mirvel::propertylist
