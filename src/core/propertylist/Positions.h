#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::propertylist {

/// A position in a text.
struct Position {
  std::size_t line = 0;    ///< counted from 1
  std::size_t column = 0;  ///< in bytes, counted from 1

  bool operator==(const Position&) const = default;
};

/// The position of a byte offset, which may be the end of the text. Only line feeds end lines. Linear in `offset`.
Position positionOf(std::string_view text, std::size_t offset);

/// The line starts of a text, for many positions in it. The constructor is linear, each query a binary search. The text
/// isn't kept.
class LineStarts {
 public:
  LineStarts() = default;  ///< of an empty text
  explicit LineStarts(std::string_view text);
  Position positionOf(std::size_t offset) const;

 private:
  std::vector<std::uint32_t> m_starts;  // offsets of all lines but the first
};

/// The path of a value within a list, as in `Sockets.Listener[0]`. The root has the empty path. Dots and brackets in
/// keys aren't escaped, so paths are for messages and for `Positions::find` only.
///
/// Of an entry of a dictionary: `Sockets` and `Listener` give `Sockets.Listener`.
std::string childPath(const std::string& parent, std::string_view key);
/// Of an element of an array: `WatchPaths` and 0 give `WatchPaths[0]`.
std::string childPath(const std::string& parent, std::size_t index);

/// A hash of such a path that is computed incrementally, key by key, so that the paths of a list cost time and memory
/// in proportion to its keys, whatever their length and nesting. It isn't collision-resistant: a file made for the
/// purpose can have two paths with the same hash, which at worst puts a wrong line number into a message.
class PathHash {
 public:
  PathHash() = default;  ///< of the empty path, the root
  static PathHash of(std::string_view path) { return PathHash().with(path); }
  PathHash child(std::string_view key) const;
  PathHash child(std::size_t index) const;

  std::uint64_t number() const { return m_number; }

 private:
  PathHash with(std::string_view bytes) const;

  static constexpr std::uint64_t empty = 0xCBF29CE484222325U;  // the offset basis of FNV-1a
  std::uint64_t m_number = empty;
};

/// The positions of all keys and values of an XML list, recorded by `read` on request.
///
///     Positions positions;
///     const auto document = read(bytes, &positions);
///     const auto location = positions.find("Sockets.Listener");  // location->value.line
class Positions {
 public:
  struct Location {
    Position key;    ///< of the <key> element; equals `value` if the value has no key
    Position value;  ///< of the opening tag
  };

  /// nullopt if the list has no such path. Of a repeated key, the last occurrence.
  std::optional<Location> find(std::string_view path) const;

  // For the reader, which adds values in the order of the text and calls `complete` before anyone calls `find`.
  void clear() { *this = {}; }
  void add(PathHash path, std::size_t key, std::size_t value);
  void complete(std::string_view text);

 private:
  struct Entry {
    std::uint64_t path;
    std::uint32_t key;  // byte offsets; a text is smaller than 4 GiB, see Limits::bytes
    std::uint32_t value;
  };

  std::vector<Entry> m_entries;  // sorted by path, then by offset
  LineStarts m_lines;
};

}  // namespace mirvel::propertylist
