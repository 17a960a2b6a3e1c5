#pragma once

#include <string_view>

#include "core/base/Error.h"
#include "core/jobfile/Place.h"
#include "core/propertylist/Node.h"

namespace mirvel::jobfile {

/// Carries an error from the depth of the decoding to `Plist::decode`, or to a value that may be dropped. It gets no
/// further.
struct DecodingFailure {
  Error error;
  std::string mismatch;  ///< the core of the message: `"yes", a string, where a boolean belongs`
};

/// Throws the failure of a required key that isn't there.
[[noreturn]] void failMissing(const Place& place);

/// Throws the failure of a value of the wrong type; `expected` with its article, such as "a boolean".
[[noreturn]] void failWrongType(const propertylist::Node& found, const Place& place, std::string_view expected);

/// Throws the failure of a value that has none of its possible forms, for what `failWrongType` said of it (or of a part
/// of it, whose place is kept). The message is `text` and what was found.
[[noreturn]] void failNoForm(std::string_view text, DecodingFailure cause);

}  // namespace mirvel::jobfile
