#include "core/preferences/SettingsReset.h"

#include <algorithm>

#include "core/ports/Interface.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/settings/Defaults.h"

namespace mirvel::SettingsReset {

bool hasSuppressedQuestions(const Defaults& defaults) {
  const auto& keys = Defaults::suppressions;
  return std::any_of(keys.begin(), keys.end(), [&](std::string_view key) { return defaults.boolean(key); });
}

// Failures have been reported by the store.
void askEverythingAgain(Defaults& defaults) {
  for (const std::string_view key : Defaults::suppressions) (void)defaults.remove(key);
}

void resetAll(Defaults& defaults, Interface& interface, const Localize& localize) {
  const PreferencesTexts texts(localize);
  const int answer = interface.alert({.message = texts.resetAllQuestion(),
                                      .informativeText = texts.resetAllConsequence(),
                                      .defaultTitle = texts.resetAllButton(),
                                      .alternateTitle = localize.cancel(),
                                      .safeButton = Interface::alternateButton});
  if (answer == Interface::defaultButton) (void)defaults.removeAll();
}

}  // namespace mirvel::SettingsReset
