#pragma once

#include <cstddef>
#include <string>

#include "core/base/Result.h"
#include "core/propertylist/Node.h"

namespace mirvel::propertylist {

/// The old text form with one entry per line, as `launchctl plist` prints it on macOS:
///
///     {
///     	"CFBundleName" = "Example";
///     	"Sizes" = (
///     		16;
///     	);
///     };
///
/// Keys are in the order of the file. Keys and strings are quoted, with a backslash before quotes and backslashes, and
/// line feeds as `\n`. Data is hexadecimal in angle brackets, a set looks like an array, a UID like an integer. Meant
/// for people and line-based tools; nothing here parses it.
///
/// `LimitExceeded` if the text would be longer than `maximumSize` bytes or the value is nested deeper than
/// `Limits::depth`: indentation and shared containers can make the text far longer than the file.
Result<std::string> oldStyleText(const Node& node, std::size_t maximumSize = std::size_t{16} << 20U);

}  // namespace mirvel::propertylist
