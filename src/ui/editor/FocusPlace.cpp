#include "ui/editor/FocusPlace.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>

namespace mirvel::ui {

namespace {

QScrollBar* scrollBarOf(const QWidget& form) {
  const auto* const area = form.findChild<QScrollArea*>();
  return area ? area->verticalScrollBar() : nullptr;
}

void setPosition(QPlainTextEdit& text, int position) {
  QTextCursor cursor = text.textCursor();
  cursor.setPosition(std::min(position, static_cast<int>(text.toPlainText().size())));
  text.setTextCursor(cursor);
}

}  // namespace

FocusPlace::FocusPlace(QWidget& form) : m_form(form) {
  if (const auto* const bar = scrollBarOf(form)) m_scroll = bar->value();
  const auto* const focus = form.focusWidget();
  if (!focus || !focus->hasFocus()) return;
  m_name = focus->objectName();
  if (const auto* line = qobject_cast<const QLineEdit*>(focus)) m_position = line->cursorPosition();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(focus)) m_position = text->textCursor().position();
}

void FocusPlace::restore() const {
  if (auto* const bar = scrollBarOf(m_form)) bar->setValue(m_scroll);
  if (m_name.isEmpty()) return;
  auto* const control = m_form.findChild<QWidget*>(m_name);
  if (!control) return;
  control->setFocus();
  if (auto* line = qobject_cast<QLineEdit*>(control)) line->setCursorPosition(m_position);
  if (auto* text = qobject_cast<QPlainTextEdit*>(control)) setPosition(*text, m_position);
}

}  // namespace mirvel::ui
