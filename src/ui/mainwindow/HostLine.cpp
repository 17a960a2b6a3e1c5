#include "ui/mainwindow/HostLine.h"

#include <QAccessible>
#include <QLabel>
#include <QVBoxLayout>

#include "core/actions/HostStart.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Notifications.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

HostLine::HostLine(const Localize& localize, const HostStart& hostStart, Notifications& notifications)
    : m_localize(localize), m_text(new QLabel) {
  m_text->setWordWrap(true);
  m_text->setTextFormat(Qt::PlainText);
  m_text->setContentsMargins(10, 6, 10, 6);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(new Hairline);
  layout->addWidget(m_text);
  hide();
  m_hostChanged = notifications.hostChanged.subscribe([this, &hostStart] { show(hostStart.failure()); });
}

void HostLine::show(const std::optional<std::string>& failure) {
  setVisible(failure.has_value());
  const auto selectable = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
  m_text->setTextInteractionFlags(failure ? Qt::TextInteractionFlags(selectable) : Qt::NoTextInteraction);
  m_text->setText(failure ? qt(WindowTexts(m_localize).jobsDontRun(*failure)) : QString());
  if (!failure) return;
  QAccessibleEvent event(m_text, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace mirvel::ui
