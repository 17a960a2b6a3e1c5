#pragma once

namespace mirvel {

enum class Attributes {
  All,       ///< access lists included
  Harmless,  ///< none that grants rights to anybody
};

/// Copies the extended attributes of one open file to another. What the file system or the process's rights don't
/// allow is left out.
void copyExtendedAttributes(int from, int to, Attributes which);

}  // namespace mirvel
