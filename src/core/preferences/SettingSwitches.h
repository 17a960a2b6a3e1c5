#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/settings/Defaults.h"

namespace mirvel {

class Interface;
class Localize;

/// A check box of the preferences: a boolean setting.
struct SettingSwitch {
  std::string_view key;  ///< of `Defaults::Key`
  std::string title;
  std::string hint = {};  ///< an explanation below it; may be empty
  bool isRisky = false;   ///< the explanation is a warning
};

/// Check boxes below one title.
struct SettingGroup {
  std::string title;
  std::vector<SettingSwitch> switches;
};

namespace SettingSwitches {

/// The check boxes of the General pane.
std::vector<SettingGroup> general(const Localize& localize);
/// Those of the Advanced pane.
SettingSwitch showInternalHelpers(const Localize& localize);
SettingGroup systemJobs(const Localize& localize);

/// Stores the state that a check box shows. Before changing system jobs is allowed the user is asked, with Cancel as
/// the default. Returns the state that is in effect then, which the check box has to show.
bool set(std::string_view key, bool isOn, Defaults& defaults, Interface& interface, const Localize& localize);

}  // namespace SettingSwitches

}  // namespace mirvel
