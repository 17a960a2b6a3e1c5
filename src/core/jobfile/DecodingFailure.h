#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/base/Error.h"
#include "core/propertylist/Node.h"

namespace mirvel::jobfile {

/// The position of a value in a job file: a key of a dictionary or an index of an array, below another position. The
/// decoders create one on the stack per level, so that the text is built for errors only. A place refers to its parent
/// and to the text of its key, and must not outlive them.
///
///     const Place top;
///     top.key("Sockets").key("Listener").index(0).text()  // "Sockets.Listener[0]"
class Place {
 public:
  /// The root of the file. Values that don't fit their key are errors.
  Place() = default;
  /// The root of the file, where values that don't fit their key are skipped instead of failing the whole file. All
  /// places below it are tolerant, too.
  static Place tolerant() {
    Place top;
    top.m_isTolerant = true;
    return top;
  }
  Place key(std::string_view key) const { return {this, key, 0}; }
  Place index(std::size_t index) const { return {this, {}, index}; }
  bool isTolerant() const { return m_isTolerant; }

  /// The key path, such as `ProgramArguments[2]`; empty for the root. Dots and brackets in keys aren't escaped. Each
  /// key is cut after 512 bytes, since a hostile file can cause thousands of errors below one huge key.
  std::string text() const;

 private:
  Place(const Place* parent, std::string_view key, std::size_t index)
      : m_parent(parent), m_key(key), m_index(index), m_isTolerant(parent->m_isTolerant) {}

  const Place* m_parent = nullptr;
  std::string_view m_key;  // data() is null for an index
  std::size_t m_index = 0;
  bool m_isTolerant = false;
};

/// The exception that carries an error out of nested decoders. It never leaves this folder: `Plist::decode` catches it
/// and returns the error, and `decodeOrDrop` and `decodeOptional` skip the value.
struct DecodingFailure {
  Error error;
  std::string mismatch;  ///< the part of the message on types: `"yes", a string, where a boolean belongs`
};

/// Throws `MissingKey` for a required key.
[[noreturn]] void failMissing(const Place& place);

/// Throws `WrongType`. `expected` is the expected type with its article, such as "a boolean".
[[noreturn]] void failWrongType(const propertylist::Node& found, const Place& place, std::string_view expected);

/// Throws `NoForm` for a value that has none of the forms its key allows. `cause` is the failure of the value or of a
/// part of it, whose place is kept; the message consists of `text` and the mismatch of `cause`.
[[noreturn]] void failNoForm(std::string_view text, DecodingFailure cause);

}  // namespace mirvel::jobfile
