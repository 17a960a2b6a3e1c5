#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/propertylist/DictionaryBuilder.h"
#include "core/propertylist/Reader.h"

namespace mirvel::plist {

/// Builds the value of a binary list ("bplist0"): a header of eight bytes, the objects, a table of their offsets, and a
/// trailer of 32 bytes. Objects name each other by number; one that is named twice is read twice, within bounds. With a
/// stack of its own in place of recursion. Throws `ReadFailure`.
class BinaryReader {
 public:
  static bool isBinary(std::string_view bytes);

  /// `bytes` must outlive the reader.
  explicit BinaryReader(std::string_view bytes) : m_bytes(bytes) {}

  Value read();
  std::vector<Warning> takeWarnings() { return std::move(m_warnings); }

 private:
  /// A container whose elements aren't all read yet.
  struct Frame {
    Type type;
    std::uint64_t object;
    std::uint64_t references;  ///< offset of the reference of the first element
    std::uint64_t count;
    std::uint64_t next;
    std::size_t firstValue;
    std::size_t firstKey;
  };
  struct Extent {
    std::uint64_t start;  ///< offset of the content
    std::uint64_t count;
  };

  void readTrailer();
  void checkOffsets() const;
  std::uint64_t offsetOf(std::uint64_t object) const;
  std::uint64_t referenceAt(std::uint64_t offset) const;
  std::uint64_t bigEndian(std::uint64_t offset, std::uint64_t size) const;
  std::uint8_t byteAt(std::uint64_t offset) const { return static_cast<std::uint8_t>(m_bytes[offset]); }

  void begin(std::uint64_t object);
  void finish();
  void deliver(Value value);

  Extent extent(std::uint64_t offset, std::uint64_t unit) const;
  Value scalar(std::uint64_t offset);
  Value integer(std::uint64_t offset);
  Value real(std::uint64_t offset) const;
  Value date(std::uint64_t offset) const;
  Value uid(std::uint64_t offset) const;
  std::string_view content(std::uint64_t offset, std::uint64_t unit);
  Value string(std::uint64_t offset);
  std::string wideString(std::uint64_t offset);
  void open(std::uint64_t object, std::uint64_t offset, Type type);
  void readKeys(const Frame& frame, std::uint64_t references);
  std::string_view key(std::uint64_t object);
  void countObject();
  void spend(std::uint64_t bytes, std::uint64_t offset);

  std::string_view m_bytes;
  std::uint64_t m_offsetSize = 0;
  std::uint64_t m_referenceSize = 0;
  std::uint64_t m_objectCount = 0;
  std::uint64_t m_topObject = 0;
  std::uint64_t m_table = 0;  // offset of the offset table, which ends the objects

  std::vector<Frame> m_frames;
  std::vector<bool> m_isOpen;  // by object: is it on the stack?
  std::vector<Value> m_values;
  std::vector<ReadKey> m_keys;
  std::deque<std::string> m_decodedKeys;
  DictionaryBuilder m_builder{Repeated::FirstWins};
  std::uint64_t m_objectsLeft = 0;
  std::uint64_t m_bytesLeft = 0;
  std::vector<Warning> m_warnings;
};

}  // namespace mirvel::plist
