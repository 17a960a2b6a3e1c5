#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/propertylist/Value.h"
#include "core/support/Result.h"

namespace mirvel::plist {

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

struct Document {
  Value value;
  Format format = Format::Xml;
  std::vector<Warning> warnings = {};
};

/// Bounds that no list passes, so that hostile input costs time and memory in proportion to its own size.
struct Limits {
  static constexpr std::size_t depth = 512;                 ///< containers in each other, as on macOS
  static constexpr std::size_t objects = std::size_t{1} << 21;  ///< values (in a binary list keys too), shared ones counted each time
  static constexpr std::size_t sharedBytes = std::size_t{1} << 26;  ///< text and data, beyond the size of the input
};

/// Reads an XML or a binary property list: what the reader of macOS accepts, and nothing that it refuses, save for the
/// differences told in docs/PROPERTY-LISTS.md. An error has the line and column (XML, counted in its UTF-8 form) or the
/// offset (binary). With `positions`, the place of every key and value of an XML list is noted there.
Result<Document> read(std::string_view bytes, Positions* positions = nullptr);

}  // namespace mirvel::plist
