#include "ui/scripts/ScriptText.h"

#include <QEvent>
#include <QVBoxLayout>

#include "core/scripts/SyntaxHelper.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptLook.h"
#include "ui/scripts/ScriptMenu.h"

namespace mirvel::ui {

ScriptText::ScriptText(const MakeEditor& make, const Localize& localize, const QString& name, QWidget* parent)
    : QWidget(parent), m_localize(localize), m_editor(make(*this)) {
  setLayoutDirection(Qt::LeftToRight);
  QWidget& widget = m_editor.widget();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(&widget);
  setFocusProxy(&widget);
  widget.setAccessibleName(name);
  widget.setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&widget, &QWidget::customContextMenuRequested, this, &ScriptText::showMenu);
  m_editor.changed = [this] { textHasChanged(); };
  m_editor.setLook(scriptLook(palette()));
}

ScriptText::~ScriptText() {
  m_editor.changed = {};  // the editor is a child widget, so it is destroyed after the members of this class
}

std::string ScriptText::text() const {
  return m_editor.bytes();
}

void ScriptText::setText(std::string_view text) {
  m_editor.setBytes(text);
}

bool ScriptText::isModified() const {
  return m_editor.isModified();
}

void ScriptText::setModified(bool modified) {
  m_editor.setModified(modified);
}

void ScriptText::setSyntax(SyntaxType type) {
  if (type == m_syntax) return;
  m_syntax = type;
  m_editor.setSyntax(type);
  emit syntaxChanged();
}

void ScriptText::setDetectsSyntax(bool detects) {
  m_detectsSyntax = detects;
  detectSyntax();
}

void ScriptText::detectSyntax() {
  if (!m_detectsSyntax) return;
  if (const auto type = SyntaxHelper::syntaxOfText(text())) setSyntax(*type);
}

std::size_t ScriptText::insertionPoint() const {
  return m_editor.insertionPoint();
}

void ScriptText::setInsertionPoint(std::size_t point) {
  m_editor.setInsertionPoint(point);
}

void ScriptText::setLineNumbersVisible(bool visible) {
  m_editor.setLineNumbersVisible(visible);
}

void ScriptText::setWrapsLines(bool wraps) {
  m_editor.setWrapsLines(wraps);
}

void ScriptText::setEditable(bool editable) {
  m_editor.setEditable(editable);
}

void ScriptText::markLine(std::size_t point) {
  m_editor.markLine(point);
}

void ScriptText::textHasChanged() {
  m_editor.markLine(std::nullopt);
  detectSyntax();
  emit textChanged();
}

void ScriptText::showMenu(QPoint position) {
  popUpScriptMenu(m_editor, m_localize, m_editor.widget().mapToGlobal(position));
}

void ScriptText::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const auto type = event->type();
  if (type == QEvent::PaletteChange || type == QEvent::ApplicationFontChange) m_editor.setLook(scriptLook(palette()));
}

}  // namespace mirvel::ui
