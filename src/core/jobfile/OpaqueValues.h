#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

/// A value in a job file, below a known key, that the record can't represent: its key is unknown, its type is wrong, or
/// it lies too deep. A save keeps it where it is.
struct OpaqueValue {
  /// From the top: the keys of dictionaries, and the places in arrays, such as "[0]".
  using Path = std::vector<std::string>;

  Path path;
  propertylist::Value value;

  /// The path for a person: `Sockets.Listener[1].SockPathMode`.
  std::string text() const;
};

/// What `file` holds in its dictionaries and `read`, which was made of it, doesn't; and what is no dictionary there
/// where `read` has one in a list.
std::vector<OpaqueValue> opaqueValues(const propertylist::Value& file, const propertylist::Value& read);

bool holdsAt(const propertylist::Value& file, std::span<const std::string> path);
/// Takes the entry of a dictionary out, if it is there. An element of a list leaves an empty dictionary, so that the
/// others keep their places.
void removeAt(propertylist::Value& file, std::span<const std::string> path);

}  // namespace mirvel::jobfile
