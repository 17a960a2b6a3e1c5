#pragma once

#include <string>
#include <string_view>

namespace mirvel {

/// The values used from the embedded property list of a privileged helper tool, in the format printed by `launchctl
/// plist`. Parsed line by line; escapes inside quotes are kept.
struct HelperToolLines {
  std::string identifier;  ///< "CFBundleIdentifier"
  /// The first of "SMAuthorizedClients". Without that entry, the first line of the text, usually "{".
  std::string clients;
  std::string name;  ///< "CFBundleName"

  /// Never fails; missing values stay empty.
  static HelperToolLines read(std::string_view text);
};

}  // namespace mirvel
