#include "ui/mainwindow/HostLine.h"

#include <QAccessible>
#include <QLabel>
#include <QVBoxLayout>

#include "core/mainwindow/WindowTexts.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

HostLine::HostLine(Program& program) : m_program(program), m_text(new QLabel) {
  m_text->setWordWrap(true);
  m_text->setTextFormat(Qt::PlainText);
  m_text->setContentsMargins(10, 6, 10, 6);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(new Hairline);
  layout->addWidget(m_text);
  hide();
  m_hostChanged = program.notifications.hostChanged.subscribe([this] { show(m_program.hostStart.failure()); });
}

void HostLine::show(const std::optional<std::string>& failure) {
  setVisible(failure.has_value());
  const auto selectable = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
  m_text->setTextInteractionFlags(failure ? Qt::TextInteractionFlags(selectable) : Qt::NoTextInteraction);
  m_text->setText(failure ? qt(WindowTexts(m_program.foundation.localize).jobsDontRun(*failure)) : QString());
  if (!failure) return;
  QAccessibleEvent event(m_text, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace mirvel::ui
