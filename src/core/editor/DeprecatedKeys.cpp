#include "core/editor/DeprecatedKeys.h"

#include <algorithm>

#include "core/editor/SectionKeys.h"

namespace mirvel {

bool deleteDeprecated(jobfile::Plist& plist, std::string_view key) {
  bool isRemoved = false;
  SectionKeys::Deprecated::forEach([&](const auto& row) {
    auto& field = plist.*row.field;
    if (row.text != key || !field.has_value()) return;
    field.reset();
    isRemoved = true;
  });
  return isRemoved;
}

bool deleteUnknown(jobfile::Plist& plist, std::string_view key) {
  if (plist.unknownKeys) {
    auto& keys = *plist.unknownKeys;
    const auto found = std::find(keys.begin(), keys.end(), key);
    if (found != keys.end()) {
      keys.erase(found);
      return true;
    }
  }
  const auto values = plist.opaqueValues();
  const auto opaque =
      std::find_if(values.begin(), values.end(), [key](const auto& value) { return value.text() == key; });
  if (opaque == values.end()) return false;
  plist.removedValues.push_back(opaque->path);
  return true;
}

}  // namespace mirvel
