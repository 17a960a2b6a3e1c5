#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "core/propertylist/Document.h"
#include "core/propertylist/Room.h"

namespace mirvel::propertylist {

/// Builds the nodes of a binary list ("bplist0"): a header of eight bytes, the objects, a table of their offsets, and a
/// trailer of 32 bytes. Objects name each other by number; a container that is named twice is read once and shared, but
/// counted each time, so that whoever goes through the list afterwards isn't led through more than the limits. With a
/// stack of its own in place of recursion. Throws `ReadFailure`.
class BinaryReader {
 public:
  static bool isBinary(std::string_view bytes);

  /// `bytes` lie in the arena, or outlive it.
  BinaryReader(std::string_view bytes, Arena& arena) : m_bytes(bytes), m_arena(arena) {}

  Node read();
  Warnings takeWarnings() { return std::move(m_warnings); }

 private:
  struct Object {
    std::uint32_t offset;
    std::uint32_t container;  ///< 1 + its index, or 0 for what isn't known as one
  };
  /// A container that was named. Scalars are read anew each time, which costs less than remembering them.
  struct Container {
    Node node;
    std::uint64_t size;  ///< with everything in it, what is shared counted each time
    bool isComplete;     ///< false: it is being read, and mustn't be named
  };
  /// A container whose values aren't all read yet.
  struct Frame {
    Type type;
    std::uint32_t container;  ///< its index
    std::uint64_t offset;
    std::uint64_t references;  ///< offset of the reference of the first value
    Node* slots;               ///< in the arena; of a dictionary: key, value, key, value
    std::uint64_t count;       ///< of values
    std::uint64_t next;
    std::uint64_t outerSize;  ///< of what is complete in the container around it
  };
  struct Extent {
    std::uint64_t start;  ///< offset of the content
    std::uint64_t count;
  };

  void readTrailer();
  void readOffsets();
  std::uint8_t byteAt(std::uint64_t offset) const { return static_cast<std::uint8_t>(m_bytes[offset]); }
  /// Of a number wider than 64 bits, the lower ones, which are all that macOS looks at.
  std::uint64_t bigEndian(std::uint64_t offset, std::uint64_t size) const {
    if (size == 1) return byteAt(offset);
    if (size == 2) return static_cast<std::uint64_t>(byteAt(offset) << 8U | byteAt(offset + 1));
    constexpr std::uint64_t widest = sizeof(std::uint64_t);
    if (size > widest) offset += std::exchange(size, widest) - widest;
    std::uint64_t number = 0;
    for (std::uint64_t i = 0; i < size; ++i) number = number << 8U | byteAt(offset + i);
    return number;
  }
  std::uint64_t offsetOf(std::uint64_t object) const;
  std::uint64_t objectAt(std::uint64_t reference) const;

  bool readValue(std::uint64_t object, Node& slot);
  void open(std::uint64_t object, std::uint64_t offset, Type type);
  void readKeys(Frame& frame, std::uint64_t references);
  void readValues();
  void finish();
  Node containerNode(const Frame& frame);
  Node dictionary(const Frame& frame);
  void grow(std::uint64_t size);
  void warn(std::string_view message, std::uint64_t offset);

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
  std::uint64_t m_table = 0;  // offset of the offset table, which ends the objects

  Arena& m_arena;
  Room<Frame, 32> m_frames;
  Room<Container, 16> m_containers;
  Object* m_objects = nullptr;  // in the arena
  std::uint64_t m_size = 0;     // of what is complete in the innermost open container
  std::uint64_t m_slots = 0;    // of all containers, each counted once
  Warnings m_warnings;
};

}  // namespace mirvel::propertylist
