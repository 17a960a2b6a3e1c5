#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

#include "core/base/Result.h"
#include "core/propertylist/Document.h"

namespace mirvel::propertylist {

class Positions;

/// Reads an XML or a binary property list: accepts what the reader of macOS accepts, and nothing that it refuses, but
/// for the differences listed in docs/PROPERTY-LISTS.md. An error has the line and column (XML, counted in its UTF-8
/// form) or the offset (binary). With `positions`, the position of every key and value of an XML list is recorded
/// there.
Result<Document> read(std::string_view bytes, Positions* positions = nullptr);

/// Reads a list that must be a dictionary; `WrongType` if it is anything else.
Result<Dictionary> readDictionary(std::string_view bytes);
/// The same of a file. Every error names the file; more than `maximumSize` bytes are refused with `LimitExceeded`.
Result<Dictionary> readDictionary(const std::filesystem::path& file, std::size_t maximumSize);

}  // namespace mirvel::propertylist
