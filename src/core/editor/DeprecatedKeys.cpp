#include "core/editor/DeprecatedKeys.h"

#include <algorithm>

#include "core/editor/SectionKeys.h"

namespace mirvel {

bool deleteDeprecated(launchd::Plist& plist, std::string_view key) {
  bool isRemoved = false;
  SectionKeys::Deprecated::forEach([&](const auto& row) {
    auto& field = plist.*row.field;
    if (row.text != key || !field.has_value()) return;
    field.reset();
    isRemoved = true;
  });
  return isRemoved;
}

bool deleteUnknown(launchd::Plist& plist, std::string_view key) {
  if (!plist.unknownKeys) return false;
  auto& keys = *plist.unknownKeys;
  const auto found = std::find(keys.begin(), keys.end(), key);
  if (found == keys.end()) return false;
  keys.erase(found);
  return true;
}

}  // namespace mirvel
