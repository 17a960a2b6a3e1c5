#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "core/plist/Plist.h"
#include "core/propertylist/Value.h"

namespace mirvel::lint {

/// What a check may ask of the machine that the job is for.
struct Surroundings {
  /// Must be there; also gives true where nobody can tell.
  std::function<bool(const std::string& path)> exists;
  std::string homeFolder = {};  ///< of the user; empty: not known
};

/// What the checks look at: a job file without the keys that were refused.
struct Subject {
  plist::Dictionary file;
  launchd::Plist record;                                ///< of that file
  std::set<std::string, std::less<>> refusedKeys = {};  ///< at the top

  /// Whether the file brought a key, refused or not.
  bool has(std::string_view key) const { return file.find(key) || refusedKeys.count(key) != 0; }
};

}  // namespace mirvel::lint
