#pragma once

namespace mirvel {

enum class Attributes {
  All,       ///< access lists included
  Harmless,  ///< none that grants rights to anybody
};

/// Copies the extended attributes of one open file to another. What the file system or the process's rights don't
/// allow is left out.
void copyExtendedAttributes(int from, int to, Attributes which);

/// Whether the open file has an access list (acl(5)), which makes of the group's rights in its mode the most that
/// anybody has whom the list names. Never where the mode means the group alone. True if it can't be told.
bool hasAccessList(int file);

}  // namespace mirvel
