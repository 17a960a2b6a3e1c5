#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/base/Result.h"
#include "core/propertylist/Arena.h"
#include "core/propertylist/Node.h"

namespace mirvel::propertylist {

class Positions;

enum class Format { Xml, Binary };

/// Something that macOS reads, and that a person should mend all the same.
struct Warning {
  std::string message;
  std::size_t line = 0;  ///< counted from 1; 0 in a binary list
  std::size_t column = 0;
  std::optional<std::uint64_t> offset = {};  ///< byte offset in a binary list

  /// The message with its place in front.
  std::string text() const;
};

struct Warnings {
  std::vector<Warning> list;
  std::size_t unreported = 0;  ///< how many there are beside those of the list
};

/// A list that was read, with the memory that its nodes lie in.
class Document {
 public:
  Document(Arena arena, Node root, Format format, Warnings warnings, std::optional<std::string_view> source = {})
      : m_arena(std::move(arena)), m_root(root), m_format(format), m_warnings(std::move(warnings)), m_source(source) {}

  const Node& root() const { return m_root; }
  Format format() const { return m_format; }
  /// The bytes that were read, where they are kept, because texts of the list lie in them. That is so of nearly all
  /// XML.
  std::optional<std::string_view> source() const { return m_source; }
  const std::vector<Warning>& warnings() const { return m_warnings.list; }
  /// How many more there are, which nothing is told of but their number.
  std::size_t unreportedWarnings() const { return m_warnings.unreported; }
  /// A copy of the root that stands on its own.
  Value value() const { return valueOf(m_root); }

 private:
  Arena m_arena;
  Node m_root;
  Format m_format;
  Warnings m_warnings;
  std::optional<std::string_view> m_source;
};

/// Bounds that no list passes, so that hostile input costs time and memory in proportion to its own size.
struct Limits {
  static constexpr std::size_t bytes = std::size_t{1} << 30;    ///< the size of the input
  static constexpr std::size_t depth = 512;                     ///< containers in each other, as on macOS
  static constexpr std::size_t objects = std::size_t{1} << 21;  ///< values in all
  static constexpr std::size_t warnings = 100;                  ///< told of one list; the rest is only counted
  /// Where objects are shared, values may add up to no more than `objects` of this size, texts included, beyond the
  /// size of the input: what a copy with nothing shared takes.
  static constexpr std::size_t valueSize = 64;
};

/// Reads an XML or a binary property list: what the reader of macOS accepts, and nothing that it refuses, save for the
/// differences told in docs/PROPERTY-LISTS.md. An error has the line and column (XML, counted in its UTF-8 form) or the
/// offset (binary). With `positions`, the place of every key and value of an XML list is noted there.
Result<Document> read(std::string_view bytes, Positions* positions = nullptr);

}  // namespace mirvel::propertylist
