#include "ui/editor/FocusPlace.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

namespace mirvel::ui {

namespace {

QScrollBar* scrollBarOf(const QWidget& form) {
  const auto* const area = form.findChild<QScrollArea*>();
  return area ? area->verticalScrollBar() : nullptr;
}

/// Object names that Qt gives to parts of its widgets don't count.
bool isNamed(const QWidget& widget) {
  return !widget.objectName().isEmpty() && !widget.objectName().startsWith(QLatin1String("qt_"));
}

/// The visible focusable controls, in the order of their creation.
QWidgetList controlsOf(const QWidget& part) {
  QWidgetList controls = part.findChildren<QWidget*>();
  controls.erase(std::remove_if(controls.begin(), controls.end(),
                                [&](const QWidget* child) {
                                  return child->focusPolicy() == Qt::NoFocus || !child->isVisibleTo(&part);
                                }),
                 controls.end());
  return controls;
}

void setPosition(QPlainTextEdit& text, int position) {
  QTextCursor cursor = text.textCursor();
  cursor.setPosition(std::min(position, text.document()->characterCount() - 1));
  text.setTextCursor(cursor);
}

}  // namespace

FocusPlace::FocusPlace(QWidget& form) : m_form(form) {
  if (const auto* const bar = scrollBarOf(form)) m_scroll = bar->value();
  auto* const focus = form.focusWidget();
  if (!focus || !focus->hasFocus()) return;
  m_focus = focus;
  const QWidget* named = focus;
  while (named != &form && !isNamed(*named)) named = named->parentWidget();
  if (named == &form) return;
  m_name = named->objectName();
  m_control = static_cast<int>(controlsOf(*named).indexOf(focus));
  if (const auto* line = qobject_cast<const QLineEdit*>(focus)) m_position = line->cursorPosition();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(focus)) m_position = text->textCursor().position();
}

void FocusPlace::restore() const {
  if (auto* const bar = scrollBarOf(m_form)) bar->setValue(m_scroll);
  if (m_focus && m_form.isAncestorOf(m_focus) && m_focus->isVisibleTo(&m_form)) return m_focus->setFocus();
  QWidget* const control = successor();
  if (!control) return;
  control->setFocus();
  if (auto* line = qobject_cast<QLineEdit*>(control)) line->setCursorPosition(m_position);
  if (auto* text = qobject_cast<QPlainTextEdit*>(control)) setPosition(*text, m_position);
}

/// The last control if there are fewer now; null if there is no control with that name.
QWidget* FocusPlace::successor() const {
  auto* const named = m_name.isEmpty() ? nullptr : m_form.findChild<QWidget*>(m_name);
  if (!named || m_control < 0) return named;
  const QWidgetList controls = controlsOf(*named);
  return controls.isEmpty() ? named : controls.at(std::min<qsizetype>(m_control, controls.size() - 1));
}

}  // namespace mirvel::ui
