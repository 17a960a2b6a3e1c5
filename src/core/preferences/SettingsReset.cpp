#include "core/preferences/SettingsReset.h"

#include <algorithm>
#include <set>
#include <variant>

#include "core/actions/RevisionHistory.h"
#include "core/ports/Interface.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/settings/Defaults.h"

namespace mirvel::SettingsReset {

namespace {

bool losesRevisions(const RevisionHistories& stores) {
  const auto initial = Defaults::registered(Defaults::Key::numberOfSavedRevisions);
  const auto* const number = initial ? std::get_if<std::int64_t>(&*initial) : nullptr;
  const auto excess = mirvel::countBeyond(stores, number ? *number : 0);
  return !excess || excess->revisions > 0;
}

}  // namespace

bool hasSuppressedQuestions(const Defaults& defaults) {
  const auto& keys = Defaults::suppressions;
  return std::any_of(keys.begin(), keys.end(), [&](std::string_view key) { return defaults.boolean(key); });
}

// Failures have been reported by the store.
void askEverythingAgain(Defaults& defaults) {
  for (const std::string_view key : Defaults::suppressions) (void)defaults.remove(key);
}

void resetAll(Defaults& defaults, const RevisionHistories& revisions, Interface& interface, const Localize& localize) {
  const PreferencesTexts texts(localize);
  const int answer = interface.alert({.message = texts.resetAllQuestion(),
                                      .informativeText = texts.resetAllConsequence(),
                                      .defaultTitle = texts.resetAllButton(),
                                      .alternateTitle = localize.cancel(),
                                      .safeButton = Interface::alternateButton});
  if (answer != Interface::defaultButton) return;
  std::set<std::string_view> kept{Defaults::Key::runAgent, Defaults::Key::firstMirvelLaunch};
  if (losesRevisions(revisions)) kept.insert(Defaults::Key::numberOfSavedRevisions);
  (void)defaults.removeAll(kept);  // the store reports failures
}

}  // namespace mirvel::SettingsReset
