#include "ui/runs/RunSheets.h"

#include "core/catalogue/Launchd.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "ui/runs/LogSheet.h"
#include "ui/runs/TestSheet.h"

namespace mirvel::ui {

RunSheets::RunSheets(const EditorContext& context, QWidget& window) : m_context(context), m_window(window) {
  m_context.shell.sheets[Sheet::Log] = [this] { showLog(); };
  m_context.shell.sheets[Sheet::Test] = [this] { showTest(); };
}

RunSheets::~RunSheets() {
  m_context.shell.sheets.erase(Sheet::Log);
  m_context.shell.sheets.erase(Sheet::Test);
}

/// Does nothing while the window has a sheet.
void RunSheets::showLog() {
  const MainWindowType* const mainWindow = m_context.shell.mainWindow;
  const auto job = m_context.selection.launchd();
  if (!job || (mainWindow && mainWindow->hasSheet())) return;
  (new LogSheet(m_context, m_context.actions, *job, m_window))->open();
}

/// Does nothing while the window has a sheet.
void RunSheets::showTest() {
  const MainWindowType* const mainWindow = m_context.shell.mainWindow;
  const auto job = m_context.selection.launchd();
  if (!job || (mainWindow && mainWindow->hasSheet())) return;
  (new TestSheet(m_context, job, m_window))->open();
}

}  // namespace mirvel::ui
