#include "ui/mainwindow/HostLine.h"

#include <QAccessible>
#include <QMainWindow>
#include <QStatusBar>

#include "ui/support/QtText.h"

namespace mirvel::ui {

HostLine::HostLine(Program& program, QMainWindow& window) : QLabel(&window), m_program(program), m_window(window) {
  setWordWrap(true);
  setTextFormat(Qt::PlainText);
  window.statusBar()->addWidget(this, 1);
  window.statusBar()->hide();
  m_hostChanged = program.notifications.hostChanged.subscribe([this] { show(m_program.hostStart.failure()); });
}

void HostLine::show(const std::optional<std::string>& failure) {
  m_window.statusBar()->setVisible(failure.has_value());
  const auto selectable = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
  setTextInteractionFlags(failure ? Qt::TextInteractionFlags(selectable) : Qt::NoTextInteraction);
  setText(failure ? qt(m_program.foundation.localize.jobsDontRun(*failure)) : QString());
  if (!failure) return;
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace mirvel::ui
