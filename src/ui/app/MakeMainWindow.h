#pragma once

#include <memory>

namespace mirvel {
class Program;
}

namespace mirvel::ui {

class IconLoader;
class MainWindow;

/// Composes the main window from the parts of a program. Both arguments must outlive it.
std::unique_ptr<MainWindow> makeMainWindow(Program& program, IconLoader& icons);

}  // namespace mirvel::ui
