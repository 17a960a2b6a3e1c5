#pragma once

#include <cstddef>
#include <string>

#include "core/base/Result.h"
#include "core/propertylist/Node.h"

namespace mirvel::propertylist {

/// The old text form, one entry to a line, as `launchctl plist` of macOS prints it:
///
///     {
///     	"CFBundleName" = "Example";
///     	"Sizes" = (
///     		16;
///     	);
///     };
///
/// Keys stand in the order of the file, and only keys and strings in quotes: there a quote, a backslash and a line end
/// get a backslash. For reading by people and by lines; nothing reads it back as a list.
///
/// More than `maximumSize` bytes, or deeper nesting than a document has, is refused with `LimitExceeded`: deep or
/// shared parts make a text far longer than the file.
Result<std::string> oldStyleText(const Node& node, std::size_t maximumSize = std::size_t{16} << 20U);

}  // namespace mirvel::propertylist
