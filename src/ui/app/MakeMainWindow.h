#pragma once

#include <memory>

namespace mirvel {
class Program;
}

namespace mirvel::ui {

class IconLoader;
class MainWindow;
struct EditorContext;

/// The parts of a program that the details and the editor use.
EditorContext editorContext(Program& program, IconLoader& icons);

/// Creates the main window with the sheets that belong to it, from the parts of a program. Both arguments must outlive
/// the window.
std::unique_ptr<MainWindow> makeMainWindow(Program& program, IconLoader& icons);

}  // namespace mirvel::ui
