#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace mirvel {

/// Which extended attributes to copy.
enum class Attributes {
  All,       ///< including access control lists
  Harmless,  ///< only those that don't grant access to anyone
};

/// Copies extended attributes from one open file to another. Best effort: attributes that the file system doesn't
/// support or that this process may not read or set are skipped silently. Others of `to` are kept.
void copyExtendedAttributes(int from, int to, Attributes which);

/// The value of an extended attribute of a file, with symbolic links followed. Null if the file has no such attribute,
/// or its file system has none at all.
std::optional<std::string> extendedAttribute(const std::filesystem::path& file, const char* name);

/// Sets an extended attribute of a file, or removes it if `value` is null, with symbolic links followed. Best effort:
/// returns whether the file now has, or hasn't, the attribute.
bool setExtendedAttribute(const std::filesystem::path& file, const char* name, const std::optional<std::string>& value);

/// Whether an open file or folder has an access control list (acl(5)). Then the group bits of its mode aren't the
/// rights of the group but the maximum for everyone whom the list names. Also true if it can't be determined, so that
/// callers err on the safe side. Always false except on Linux.
bool hasAccessList(int file);

}  // namespace mirvel
