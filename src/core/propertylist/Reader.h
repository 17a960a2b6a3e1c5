#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

#include "core/base/Result.h"
#include "core/propertylist/Document.h"

namespace mirvel::propertylist {

class Positions;

/// Reads an XML or binary property list, detected by its bytes. Accepts what the macOS reader accepts and rejects what
/// it rejects, except for the differences in docs/PROPERTY-LISTS.md:
///
/// - XML may be in UTF-8, UTF-16, UTF-32 or any encoding that its declaration names. Declaration, DOCTYPE and <plist>
///   are optional. Attributes are skipped. Data after the list is ignored with a warning.
/// - Binary lists may have any structure that obeys the limits; containers may be shared but not cyclic.
/// - Duplicate keys, faulty base64 and impossible dates are accepted with a warning.
///
/// Never crashes, hangs or exhausts memory, whatever the input; see `Limits`. Thread-safe.
///
/// Errors: `Malformed`; `UnsupportedEncoding` for an unknown encoding, or bytes that are invalid in theirs;
/// `LimitExceeded`. They have a line and a column (XML, in its UTF-8 form) or a byte offset (binary), and no file.
///
///     read("<true/>")->root().boolean();          // true
///     read("<integer>12x</integer>").error();     // "line 1, column 1: <integer> contains `12x`, which isn't a
///     number"
///
/// With `positions`, the position of every key and value of an XML list is recorded there. It is cleared first, and
/// empty after an error and for a binary list.
Result<Document> read(std::string_view bytes, Positions* positions = nullptr);

/// Reads a list whose root must be a dictionary. Errors as above; `WrongType` if the root has another type.
Result<Dictionary> readDictionary(std::string_view bytes);
/// The same from a file. Errors as above and of `readFile`, `LimitExceeded` if the file is larger than `maximumSize`
/// bytes. They have the path.
Result<Dictionary> readDictionary(const std::filesystem::path& file, std::size_t maximumSize);

/// Whether a list contains XML comments, which are lost when it is read and written. `<!--` within CDATA sections and
/// processing instructions isn't a comment. False for binary lists and for text that can't be decoded. The list needn't
/// be well-formed otherwise.
bool hasComments(std::string_view bytes);

}  // namespace mirvel::propertylist
