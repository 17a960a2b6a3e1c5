#include "ui/creation/CreationSheets.h"

#include <QGuiApplication>

#include "core/app/Program.h"
#include "core/creation/ExportJob.h"
#include "core/creation/ImportController.h"
#include "core/session/Shell.h"
#include "ui/creation/DuplicateViewController.h"
#include "ui/creation/ImportDrop.h"
#include "ui/creation/ImportViewController.h"
#include "ui/creation/NewViewController.h"
#include "ui/creation/RestoreSheet.h"

namespace mirvel::ui {

namespace {

/// Only Alt counts here: Control is held by whoever chooses the command with its shortcut.
bool showsHiddenFiles() {
  return QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
}

}  // namespace

CreationSheets::CreationSheets(Program& program, IconLoader& icons, QWidget& window)
    : m_program(program), m_window(window) {
  Shell& shell = program.shell;
  shell.sheets[Sheet::New] = [this, &icons] { show<NewViewController>(icons); };
  shell.sheets[Sheet::Import] = [this] { show<ImportViewController>(); };
  shell.sheets[Sheet::Duplicate] = [this] { show<DuplicateViewController>(); };
  shell.sheets[Sheet::RestoreDeleted] = [this] { show<RestoreSheet>(); };
  shell.importJob = [&program] { importAction(program.creationContext, showsHiddenFiles()); };
  shell.exportJob = [&program] { exportJob(program.selection, program.foundation.roots, program.platform.interface); };
  new ImportDrop(program, window);
}

CreationSheets::~CreationSheets() {
  Shell& shell = m_program.shell;
  shell.sheets.erase(Sheet::New);
  shell.sheets.erase(Sheet::Import);
  shell.sheets.erase(Sheet::Duplicate);
  shell.sheets.erase(Sheet::RestoreDeleted);
  shell.importJob = nullptr;
  shell.exportJob = nullptr;
}

template <typename Sheet, typename... More>
void CreationSheets::show(More&... more) {
  const MainWindowType* const window = m_program.shell.mainWindow;
  if (window && window->hasSheet()) return;  // one at a time
  (new Sheet(m_program, more..., m_window))->open();
}

}  // namespace mirvel::ui
