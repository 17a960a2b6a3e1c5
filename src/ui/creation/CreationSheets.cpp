#include "ui/creation/CreationSheets.h"

#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include "core/creation/CopiedJobs.h"
#include "core/creation/CreationContext.h"
#include "core/mainwindow/MenuController.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Shell.h"
#include "ui/creation/CopySheets.h"
#include "ui/creation/NewViewController.h"
#include "ui/creation/RestoreSheet.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// Only Alt counts here: Control is part of the command's shortcut.
bool showsHiddenFiles() {
  return QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
}

std::vector<URL> droppedJobFiles(const QMimeData& data) {
  std::vector<std::filesystem::path> files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) files.push_back(path(url.toLocalFile()));
  }
  return importableFiles(files);
}

/// Imports the job files that are dropped on the window, unless a control in it accepts the drop. Owned by the window.
class ImportDrop final : public QObject {
 public:
  ImportDrop(const CreationContext& context, const MenuController& menus, QWidget& window)
      : QObject(&window), m_context(context), m_menus(menus), m_window(window) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool accepts(const QDropEvent& event) const;
  void answer(QDropEvent& event) const;
  void drop(QDropEvent& event);

  const CreationContext& m_context;
  const MenuController& m_menus;
  QWidget& m_window;
  bool m_isAccepted = false;  ///< decided when the drag enters: every move would look at the disk again
};

bool ImportDrop::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
      m_isAccepted = accepts(static_cast<QDropEvent&>(*event));
      [[fallthrough]];
    case QEvent::DragMove:
      answer(static_cast<QDropEvent&>(*event));
      return true;
    case QEvent::Drop:
      drop(static_cast<QDropEvent&>(*event));
      return true;
    default:
      return QObject::eventFilter(watched, event);
  }
}

/// Only copying is accepted, since the source of a move would delete its files. A drag that comes from this program
/// contains jobs that are in the list already.
bool ImportDrop::accepts(const QDropEvent& event) const {
  return !event.source() && event.possibleActions().testFlag(Qt::CopyAction) && m_menus.isEnabled(Command::Import) &&
         !droppedJobFiles(*event.mimeData()).empty();
}

void ImportDrop::answer(QDropEvent& event) const {
  if (m_isAccepted) event.setDropAction(Qt::CopyAction);
  event.setAccepted(m_isAccepted);
}

void ImportDrop::drop(QDropEvent& event) {
  m_isAccepted = accepts(event);
  answer(event);
  if (!m_isAccepted) return;
  m_window.activateWindow();
  importFiles(m_context, droppedJobFiles(*event.mimeData()));
}

}  // namespace

CreationSheets::CreationSheets(const CreationContext& context, const MenuController& menus, IconLoader& icons,
                               QWidget& window)
    : m_context(context), m_window(window) {
  Shell& shell = context.shell;
  shell.sheets[Sheet::New] = [this, &icons] { show<NewViewController>(icons); };
  shell.sheets[Sheet::Import] = [this] { show<ImportViewController>(); };
  shell.sheets[Sheet::Duplicate] = [this] { show<DuplicateViewController>(); };
  shell.sheets[Sheet::RestoreDeleted] = [this] { show<RestoreSheet>(); };
  shell.importJob = [&context] { importAction(context, showsHiddenFiles()); };
  shell.exportJob = [&context] { exportJob(context.selection, context.foundation.roots, context.platform.interface); };
  new ImportDrop(context, menus, window);
}

CreationSheets::~CreationSheets() {
  Shell& shell = m_context.shell;
  shell.sheets.erase(Sheet::New);
  shell.sheets.erase(Sheet::Import);
  shell.sheets.erase(Sheet::Duplicate);
  shell.sheets.erase(Sheet::RestoreDeleted);
  shell.importJob = nullptr;
  shell.exportJob = nullptr;
}

/// Does nothing while the window has a sheet.
template <typename Sheet, typename... More>
void CreationSheets::show(More&... more) {
  const MainWindowType* const window = m_context.shell.mainWindow;
  if (window && window->hasSheet()) return;
  (new Sheet(m_context, more..., m_window))->open();
}

}  // namespace mirvel::ui
