#include "ui/creation/ImportDrop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include "core/app/Program.h"
#include "core/creation/ImportController.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

std::vector<URL> filesOf(const QMimeData& data) {
  std::vector<std::filesystem::path> files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) files.push_back(path(url.toLocalFile()));
  }
  return importableFiles(files);
}

}  // namespace

ImportDrop::ImportDrop(Program& program, QWidget& window) : QObject(&window), m_program(program), m_window(window) {
  window.setAcceptDrops(true);
  window.installEventFilter(this);
}

bool ImportDrop::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
      m_isTaken = takes(static_cast<QDropEvent&>(*event));
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

/// The files stay where they are, whatever the other side proposes: a move would have it delete them. A drag of this
/// program's own has jobs that are here already.
bool ImportDrop::takes(const QDropEvent& event) const {
  return !event.source() && event.possibleActions().testFlag(Qt::CopyAction) &&
         m_program.menus.isEnabled(Command::Import) && !filesOf(*event.mimeData()).empty();
}

void ImportDrop::answer(QDropEvent& event) const {
  if (m_isTaken) event.setDropAction(Qt::CopyAction);
  event.setAccepted(m_isTaken);
}

void ImportDrop::drop(QDropEvent& event) {
  m_isTaken = takes(event);
  answer(event);
  if (!m_isTaken) return;
  m_window.activateWindow();
  importFiles(m_program.creationContext, filesOf(*event.mimeData()));
}

}  // namespace mirvel::ui
