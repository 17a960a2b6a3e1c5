#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "core/propertylist/Document.h"
#include "core/propertylist/SmallVector.h"

namespace mirvel::propertylist {

/// Builds the nodes of a binary list. Used by `read` only, for one list. Throws `ReadFailure`.
///
/// The file consists of a header of eight bytes ("bplist00"), the objects, a table of their offsets, and a trailer of
/// 32 bytes that says where the table is and how wide its entries are. All numbers are big-endian. Containers refer to
/// their elements by index into the table, so any object can be shared, and damaged lists can be cyclic.
///
/// A shared container is read once, but its size counts for each reference, because consumers of the nodes visit it as
/// often. Offsets and counts are checked before they are used; reading an offset wider than eight bytes ignores all but
/// the last eight, as macOS does. There is no recursion: `m_frames` is the stack of open containers.
class BinaryReader {
 public:
  /// Whether the bytes start with "bplist", whatever the version.
  static bool isBinary(std::string_view bytes);

  /// The nodes refer to `bytes`, which must be in the arena or outlive it.
  BinaryReader(std::string_view bytes, Arena& arena) : m_bytes(bytes), m_arena(arena) {}

  /// Reads everything that can be reached from the root, and returns the root.
  Node read();
  Warnings takeWarnings() { return std::move(m_warnings); }

 private:
  /// A row of the offset table.
  struct Object {
    std::uint32_t offset;     ///< fits, see Limits::bytes
    std::uint32_t container;  ///< its index in `m_containers` plus 1; 0 if none was read
  };
  /// A container that was referenced. Scalars are read again for each reference: that is cheaper than a lookup.
  struct Container {
    Node node;
    std::uint64_t size;  ///< including all descendants, shared ones once per reference
    bool isComplete;     ///< false: still being read, so a reference to it closes a cycle
  };
  /// A container whose elements haven't all been read.
  struct Frame {
    Type type;
    std::uint32_t container;  ///< its index in `m_containers`
    std::uint64_t offset;
    std::uint64_t references;  ///< offset of the reference to the first value
    Node* slots;               ///< in the arena; of a dictionary: key, value, key, value
    std::uint64_t count;       ///< of values
    std::uint64_t next;        ///< index of the value to read next
    std::uint64_t outerSize;   ///< the value of `m_size` for the enclosing container
  };
  /// The position of the content of an object.
  struct Extent {
    std::uint64_t start;  ///< byte offset
    std::uint64_t count;  ///< of bytes, UTF-16 units or references
  };

  void readTrailer();
  void readOffsets();
  std::uint8_t byteAt(std::uint64_t offset) const { return static_cast<std::uint8_t>(m_bytes[offset]); }
  /// The low 64 bits of a number of `size` bytes, which are all that macOS reads.
  std::uint64_t bigEndian(std::uint64_t offset, std::uint64_t size) const {
    if (size == 1) return byteAt(offset);
    if (size == 2) return static_cast<std::uint64_t>(byteAt(offset) << 8U | byteAt(offset + 1));
    constexpr std::uint64_t widest = sizeof(std::uint64_t);
    if (size > widest) offset += std::exchange(size, widest) - widest;
    std::uint64_t number = 0;
    for (std::uint64_t i = 0; i < size; ++i) number = number << 8U | byteAt(offset + i);
    return number;
  }
  /// The checked offset of an object, by its index.
  std::uint64_t offsetOf(std::uint64_t object) const;
  /// The checked index of an object, by the offset of a reference to it.
  std::uint64_t objectAt(std::uint64_t reference) const;

  bool readValue(std::uint64_t object, Node& slot);
  void open(std::uint64_t object, std::uint64_t offset, Type type);
  void readKeys(Frame& frame, std::uint64_t references);
  void readValues();
  void finish();
  Node dictionary(const Frame& frame);
  void grow(std::uint64_t size);

  Extent longExtent(std::uint64_t offset) const;
  Extent extent(std::uint64_t offset, std::uint64_t unit) const;
  std::string_view content(std::uint64_t offset, std::uint64_t unit) const;
  bool isAscii(std::string_view content) const;
  Node scalar(std::uint64_t offset);
  Node integer(std::uint64_t offset);
  Node real(std::uint64_t offset) const;
  Node date(std::uint64_t offset) const;
  Node uid(std::uint64_t offset);
  Node string(std::uint64_t offset);
  Node wideString(std::uint64_t offset);

  std::string_view m_bytes;
  std::uint64_t m_offsetSize = 0;
  std::uint64_t m_referenceSize = 0;
  std::uint64_t m_objectCount = 0;
  std::uint64_t m_topObject = 0;
  std::uint64_t m_table = 0;  // offset of the offset table, where the objects end

  Arena& m_arena;
  SmallVector<Frame, 32> m_frames;
  SmallVector<Container, 16> m_containers;
  Object* m_objects = nullptr;  // in the arena
  std::uint64_t m_size = 0;     // of the complete elements of the innermost open container
  std::uint64_t m_slots = 0;    // in all containers, each counted once
  Warnings m_warnings;
};

}  // namespace mirvel::propertylist
