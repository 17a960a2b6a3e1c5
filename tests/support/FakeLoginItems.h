#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "core/catalogue/LoginItems.h"

namespace mirvel::testdata {

/// A platform with these login items.
class FakeLoginItems final : public LoginItems {
 public:
  std::vector<Listed> ownItems;
  std::vector<Bundled> bundledItems;
  std::function<void()> whenAsked;  ///< something that happens in the midst of a scan

  std::vector<Listed> listed() override {
    if (whenAsked) whenAsked();
    return ownItems;
  }
  std::vector<Bundled> bundled() override { return bundledItems; }
  void remove(const std::string& name) override {
    const auto found =
        std::find_if(ownItems.begin(), ownItems.end(), [&](const auto& item) { return item.name == name; });
    if (found != ownItems.end()) ownItems.erase(found);
  }
};

}  // namespace mirvel::testdata
