#include "ui/app/MakeMainWindow.h"

#include "core/app/Program.h"
#include "ui/creation/CreationSheets.h"
#include "ui/editor/EditorContext.h"
#include "ui/mainwindow/MainWindow.h"

namespace mirvel::ui {

namespace {

EditorContext editorContext(Program& program, IconLoader& icons) {
  return {.foundation = program.foundation,
          .platform = program.platform,
          .saving = program.saving,
          .scanning = program.scanning,
          .selection = program.selection,
          .notifications = program.notifications,
          .shell = program.shell,
          .editing = program.editing,
          .actions = program.actions,
          .fetcher = program.fetcher,
          .mainWindow = program.mainWindow,
          .menus = program.menus,
          .kinds = program.kinds,
          .repairs = program.repairs,
          .schedules = program.scheduledController,
          .notes = program.notes,
          .iconEditing = program.icons,
          .icons = icons};
}

}  // namespace

std::unique_ptr<MainWindow> makeMainWindow(Program& program, IconLoader& icons) {
  const auto makeSheets = [&](QWidget& window) {
    return std::make_unique<CreationSheets>(program.creationContext, program.menus, icons, window);
  };
  return std::make_unique<MainWindow>(program.windowContext, program.termination, editorContext(program, icons),
                                      makeSheets);
}

}  // namespace mirvel::ui
