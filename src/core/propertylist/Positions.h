#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::propertylist {

/// A place in a text, counted from 1; columns in bytes.
struct Position {
  std::size_t line = 0;
  std::size_t column = 0;
};

Position positionOf(std::string_view text, std::size_t offset);

/// Likewise for many offsets of one text, in any order: the text is gone through once.
class Lines {
 public:
  Lines() = default;  ///< of the empty text
  explicit Lines(std::string_view text);
  Position positionOf(std::size_t offset) const;

 private:
  std::vector<std::uint32_t> m_starts;  // of all lines but the first
};

/// `Sockets` and `Listener` give `Sockets.Listener`; the whole list has the empty path.
std::string childPath(const std::string& parent, std::string_view key);
/// `WatchPaths` and 0 give `WatchPaths[0]`.
std::string childPath(const std::string& parent, std::size_t index);

/// A path of that form as a number that grows with the path, key by key. So the paths of a list cost time and memory in
/// proportion to its keys, however long these are and however deep they lie. A file that was made for it could have two
/// paths of the same number, and would gain a wrong line in a message.
class PathHash {
 public:
  PathHash() = default;  ///< of the empty path
  static PathHash of(std::string_view path) { return PathHash().with(path); }
  PathHash child(std::string_view key) const;
  PathHash child(std::size_t index) const;

  std::uint64_t number() const { return m_number; }

 private:
  PathHash with(std::string_view bytes) const;

  static constexpr std::uint64_t empty = 0xCBF29CE484222325U;  // FNV-1a
  std::uint64_t m_number = empty;
};

/// Where the keys and values of an XML list stand.
class Positions {
 public:
  struct Spot {
    Position key;  ///< where the value has no key: as `value`
    Position value;
  };

  std::optional<Spot> find(std::string_view path) const;

  // For the reader, which notes the values in the order of the text, and completes the whole before anybody asks.
  void clear() { *this = {}; }
  void add(PathHash path, std::size_t key, std::size_t value);
  void complete(std::string_view text);

 private:
  struct Entry {
    std::uint64_t path;
    std::uint32_t key;  // offsets
    std::uint32_t value;
  };

  std::vector<Entry> m_entries;  // sorted by path, then by offset
  Lines m_lines;
};

}  // namespace mirvel::propertylist
