#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/base/Error.h"
#include "core/propertylist/Arena.h"
#include "core/propertylist/Node.h"

namespace mirvel::propertylist {

enum class Format { Xml, Binary };

/// Limits on every list that is read, so that hostile input costs time and memory in proportion to its size. A list
/// that exceeds one is rejected with `LimitExceeded`, except for warnings, of which the rest is only counted.
struct Limits {
  static constexpr std::size_t bytes = std::size_t{1} << 30;    ///< size of the input
  static constexpr std::size_t depth = 512;                     ///< nested containers, the limit of macOS
  static constexpr std::size_t objects = std::size_t{1} << 21;  ///< values in total
  static constexpr std::size_t warnings = 100;                  ///< recorded per list
  /// Bytes that a value counts for, in addition to its text or data. A binary list may reference a container several
  /// times; counted once per reference, its values may take `objects` times this size more than the input has bytes.
  /// This bounds the size of a copy, which shares nothing.
  static constexpr std::size_t valueSize = 64;
};

/// A defect that macOS tolerates but that should be fixed. docs/PROPERTY-LISTS.md lists all of them.
struct Warning {
  std::string message;                       ///< one clause, without the position
  std::size_t line = 0;                      ///< counted from 1; 0 in a binary list
  std::size_t column = 0;                    ///< in bytes of UTF-8, counted from 1; 0 in a binary list
  std::optional<std::uint64_t> offset = {};  ///< byte offset; only in a binary list

  /// The message preceded by its position: "line 3, column 1: the key `a` is repeated; the last one counts".
  std::string text() const {
    return Error{.code = Error::Code::Malformed, .message = message, .line = line, .column = column, .offset = offset}
        .text();
  }
};

struct Warnings {
  std::vector<Warning> list;
  std::size_t unreported = 0;  ///< further ones that were only counted

  /// Records a warning at a byte offset, or only counts it if there are `Limits::warnings` already. `makeMessage()`
  /// returns the message and is called only if it is needed.
  template <typename MakeMessage>
  void add(std::uint64_t offset, MakeMessage makeMessage) {
    if (list.size() >= Limits::warnings) {
      ++unreported;
    } else {
      list.push_back({.message = makeMessage(), .offset = offset});
    }
  }
};

/// The result of reading a list. Owns all memory that its nodes refer to, including a copy of the text that was read,
/// so the input may be freed after `read`. Immutable, and can be moved but not copied; nodes stay valid when it is
/// moved.
class Document {
 public:
  /// For the readers. `source` is in the arena.
  Document(Arena arena, Node root, Format format, Warnings warnings, std::optional<std::string_view> source = {})
      : m_arena(std::move(arena)), m_root(root), m_format(format), m_warnings(std::move(warnings)), m_source(source) {}

  /// The value of the whole list. It and everything reachable from it is valid as long as the document.
  const Node& root() const { return m_root; }
  Format format() const { return m_format; }
  /// The bytes that were read, including a byte-order mark, if the document keeps them because its strings refer to
  /// them. That is so for XML in UTF-8, ASCII included; nullopt for text in other encodings and for binary lists.
  std::optional<std::string_view> source() const { return m_source; }
  /// In the order in which they were found; at most about `Limits::warnings`.
  const std::vector<Warning>& warnings() const { return m_warnings.list; }
  /// The number of warnings that aren't in `warnings`.
  std::size_t unreportedWarnings() const { return m_warnings.unreported; }
  /// A deep copy of the root, independent of the document.
  Value value() const { return valueOf(m_root); }

 private:
  Arena m_arena;
  Node m_root;
  Format m_format;
  Warnings m_warnings;
  std::optional<std::string_view> m_source;
};

}  // namespace mirvel::propertylist
