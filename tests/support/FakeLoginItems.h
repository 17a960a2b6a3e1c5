#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "core/catalogue/LoginItem.h"

namespace mirvel::testdata {

/// A platform with these login items.
class FakeLoginItems final : public LoginItems {
 public:
  std::vector<Listed> ownItems;
  std::vector<Bundled> bundledItems;
  std::function<void()> whenAsked;  ///< runs in the middle of a scan

  std::vector<Listed> listed() override {
    if (whenAsked) whenAsked();
    return ownItems;
  }
  std::vector<Bundled> bundled() override { return bundledItems; }
  std::optional<Error> removalFailure;
  Result<void> remove(const LoginItem& item) override {
    if (removalFailure) return *removalFailure;
    const auto found = std::find_if(ownItems.begin(), ownItems.end(),
                                    [&](const auto& own) { return own.name == item.name && own.path == item.path; });
    if (found != ownItems.end()) ownItems.erase(found);
    return {};
  }
};

}  // namespace mirvel::testdata
