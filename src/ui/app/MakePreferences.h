#pragma once

#include <memory>

namespace mirvel {
class Program;
}

namespace mirvel::ui {

class IconLoader;
class PreferencesWindow;

/// Creates the window of the preferences with its panes, from the parts of a program. Both arguments must outlive it.
std::unique_ptr<PreferencesWindow> makePreferencesWindow(Program& program, IconLoader& icons);

}  // namespace mirvel::ui
