#include "ui/app/MakeMainWindow.h"

#include "core/app/Program.h"
#include "ui/creation/CreationSheets.h"
#include "ui/editor/EditorContext.h"
#include "ui/mainwindow/MainWindow.h"

namespace mirvel::ui {

EditorContext editorContext(Program& program, IconLoader& icons) {
  return {program.session,
          program.saving,
          program.scanning,
          program.actions,
          program.mainWindow,
          program.menus,
          program.kinds,
          program.repairs,
          program.scheduledController,
          program.notes,
          program.problems,
          program.runs,
          program.moments,
          program.failedOutput,
          program.icons,
          icons};
}

std::unique_ptr<MainWindow> makeMainWindow(Program& program, IconLoader& icons) {
  const auto makeSheets = [&](QWidget& window) {
    return std::make_unique<CreationSheets>(program.creationContext, program.menus, icons, window);
  };
  return std::make_unique<MainWindow>(program.windowContext, program.termination, editorContext(program, icons),
                                      makeSheets);
}

}  // namespace mirvel::ui
