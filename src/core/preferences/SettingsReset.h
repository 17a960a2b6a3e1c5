#pragma once

#include <vector>

namespace mirvel {

class Defaults;
class Interface;
class Localize;

namespace SettingsReset {

/// Whether the user has asked not to be asked some question again.
bool hasSuppressedQuestions(const Defaults& defaults);
/// Lets all questions be asked again.
void askEverythingAgain(Defaults& defaults);
/// Removes all settings after asking, with Cancel as the default. Keeps what describes the state of the machine rather
/// than a wish: whether the background agent runs. Also keeps the number of revisions if any of the stores has more
/// than the default number, or can't be read, since they would be deleted.
void resetAll(Defaults& defaults, const RevisionHistories& revisions, Interface& interface, const Localize& localize);

}  // namespace SettingsReset

}  // namespace mirvel
