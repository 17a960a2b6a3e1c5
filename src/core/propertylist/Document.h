#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/propertylist/Arena.h"
#include "core/propertylist/Node.h"

namespace mirvel::propertylist {

enum class Format { Xml, Binary };

/// A defect that macOS tolerates, and that a person should still correct.
struct Warning {
  std::string message;
  std::size_t line = 0;  ///< counted from 1; 0 in a binary list
  std::size_t column = 0;
  std::optional<std::uint64_t> offset = {};  ///< byte offset in a binary list

  /// The message, preceded by its position.
  std::string text() const;
};

struct Warnings {
  std::vector<Warning> list;
  std::size_t unreported = 0;  ///< further ones that were only counted
};

/// The result of reading a list. Owns the memory that its nodes point into.
class Document {
 public:
  Document(Arena arena, Node root, Format format, Warnings warnings, std::optional<std::string_view> source = {})
      : m_arena(std::move(arena)), m_root(root), m_format(format), m_warnings(std::move(warnings)), m_source(source) {}

  const Node& root() const { return m_root; }
  Format format() const { return m_format; }
  /// The bytes that were read, if the document keeps them because its texts point into them. True of nearly all XML.
  std::optional<std::string_view> source() const { return m_source; }
  const std::vector<Warning>& warnings() const { return m_warnings.list; }
  /// The number of further warnings, of which nothing else is known.
  std::size_t unreportedWarnings() const { return m_warnings.unreported; }
  /// A deep copy of the root.
  Value value() const { return valueOf(m_root); }

 private:
  Arena m_arena;
  Node m_root;
  Format m_format;
  Warnings m_warnings;
  std::optional<std::string_view> m_source;
};

/// Limits for every list, so that hostile input costs time and memory in proportion to its own size.
struct Limits {
  static constexpr std::size_t bytes = std::size_t{1} << 30;    ///< the size of the input
  static constexpr std::size_t depth = 512;                     ///< nested containers, as on macOS
  static constexpr std::size_t objects = std::size_t{1} << 21;  ///< values in all
  static constexpr std::size_t warnings = 100;                  ///< reported per list; the rest is only counted
  /// Where objects are shared, values may add up to no more than `objects` of this size, texts included, beyond the
  /// size of the input: what a copy with nothing shared takes.
  static constexpr std::size_t valueSize = 64;
};

}  // namespace mirvel::propertylist
