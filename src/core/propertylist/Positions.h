#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::plist {

/// A place in a text, counted from 1; columns in bytes.
struct Place {
  std::size_t line = 0;
  std::size_t column = 0;
};

Place placeOf(std::string_view text, std::size_t offset);

/// Likewise for many offsets of one text, quick as long as they grow.
class PlaceCursor {
 public:
  explicit PlaceCursor(std::string_view text) : m_text(text) {}
  Place placeOf(std::size_t offset);

 private:
  std::string_view m_text;
  std::size_t m_offset = 0;
  std::size_t m_lines = 0;      // that end before it
  std::size_t m_lineStart = 0;  // of the line that it is in
};

/// `Sockets` and `Listener` give `Sockets.Listener`; the whole list has the empty path.
std::string childPath(const std::string& parent, std::string_view key);
/// `WatchPaths` and 0 give `WatchPaths[0]`.
std::string childPath(const std::string& parent, std::size_t index);

/// Where the keys and values of an XML list stand.
class Positions {
 public:
  struct Spot {
    Place key;  ///< where the value has no key: as `value`
    Place value;
  };

  std::optional<Spot> find(const std::string& path) const;
  void add(const std::string& path, Spot spot) { m_spots.insert_or_assign(path, spot); }
  void clear() { m_spots.clear(); }

 private:
  std::map<std::string, Spot> m_spots;
};

}  // namespace mirvel::plist
