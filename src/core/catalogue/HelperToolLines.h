#pragma once

#include <string>
#include <string_view>

namespace mirvel {

/// What is taken from the embedded property list of a privileged helper tool, in the form that `launchctl plist`
/// prints. It is read line by line, and escapes within the quotes are kept as they stand.
struct HelperToolLines {
  std::string identifier;  ///< "CFBundleIdentifier"
  /// The first of "SMAuthorizedClients". Without that entry it is the first line of the text, which as a rule is "{".
  std::string clients;
  std::string name;  ///< "CFBundleName"

  /// What isn't there stays empty.
  static HelperToolLines read(std::string_view text);
};

}  // namespace mirvel
