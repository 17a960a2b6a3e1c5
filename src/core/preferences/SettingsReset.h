#pragma once

namespace mirvel {

class Defaults;
class Interface;
class Localize;

namespace SettingsReset {

/// Whether the user has asked not to be asked some question again.
bool hasSuppressedQuestions(const Defaults& defaults);
/// Lets all questions be asked again.
void askEverythingAgain(Defaults& defaults);
/// Removes all settings after asking, with Cancel as the default.
void resetAll(Defaults& defaults, Interface& interface, const Localize& localize);

}  // namespace SettingsReset

}  // namespace mirvel
