#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

/// A value below a known key that the record can't represent, because its key is unknown, its type is wrong or it is
/// nested too deeply. The editor shows it, a save keeps it, and the user can remove it.
struct OpaqueValue {
  /// Keys of dictionaries and indexes of arrays from the root, an index as "[0]".
  using Path = std::vector<std::string>;

  Path path;
  propertylist::Value value;

  /// The path as text, such as `Sockets.Listener[1].SockPathMode`.
  std::string text() const;
};

/// The values of `file` that are missing from `read`, the encoding of the record that was decoded from it: entries of
/// dictionaries that `read` doesn't have, and elements that aren't dictionaries where `read` has one. Arrays of
/// different lengths aren't compared.
std::vector<OpaqueValue> opaqueValues(const propertylist::Value& file, const propertylist::Value& read);

/// Whether there is a value at the path.
bool holdsAt(const propertylist::Value& file, std::span<const std::string> path);
/// Removes the value at the path; does nothing if there is none. An entry of a dictionary is erased. An element of an
/// array is replaced by an empty dictionary instead, so that the indexes of other paths stay valid.
void removeAt(propertylist::Value& file, std::span<const std::string> path);

}  // namespace mirvel::jobfile
