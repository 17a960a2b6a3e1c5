#include "ui/app/OpenedURLs.h"

#include <QCoreApplication>
#include <QFileOpenEvent>

#include "ui/app/Application.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

OpenedURLs::OpenedURLs(Application& application) : m_application(application) {
  QCoreApplication::instance()->installEventFilter(this);
}

void OpenedURLs::open(const QString& url) {
  QWidget& window = m_application.window();
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  if (!url.isEmpty()) m_application.program().jobURLOpener.applicationOpenURLs({utf8(url)});
}

bool OpenedURLs::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::FileOpen) return QObject::eventFilter(watched, event);
  open(static_cast<QFileOpenEvent*>(event)->url().toString(QUrl::FullyEncoded));
  return true;
}

}  // namespace mirvel::ui
