#include "ui/scripts/ScriptText.h"

#include <QEvent>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

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
  m_editor.moved = [this] { emit moved(); };
  m_editor.setLook(scriptLook(palette()));
}

ScriptText::~ScriptText() {
  m_editor.moved = {};
  m_editor.changed = {};  // the editor is a child widget, so it is destroyed after the members of this class
}

std::string ScriptText::text() const {
  return m_editor.bytes();
}

void ScriptText::setText(std::string_view text) {
  if (std::exchange(m_pieces, {}).text) m_editor.setEditable(m_isEditable);
  m_editor.setBytes(text);
}

void ScriptText::setTextInPieces(std::shared_ptr<const std::string> text, std::function<void()> done) {
  const bool isRunning = m_pieces.text != nullptr;
  m_pieces = {.text = std::move(text), .inserted = 0, .done = std::move(done)};
  m_editor.setEditable(false);
  m_editor.beginBytes();
  if (!isRunning) appendPiece();
}

void ScriptText::appendPiece() {
  constexpr std::size_t size = std::size_t{2} << 20U;  // some milliseconds
  if (!m_pieces.text) return;
  const auto rest = std::string_view(*m_pieces.text).substr(m_pieces.inserted);
  m_editor.appendBytes(rest.substr(0, size));
  m_pieces.inserted += std::min(size, rest.size());
  if (rest.size() > size) {
    QTimer::singleShot(0, this, &ScriptText::appendPiece);
    return;
  }
  const Pieces finished = std::exchange(m_pieces, {});
  m_editor.endBytes(lineEndOf(*finished.text));
  m_editor.setEditable(m_isEditable);
  finished.done();
}

void ScriptText::replaceText(std::string_view text) {
  m_editor.replaceBytes(text);
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

TextPosition ScriptText::position() const {
  return m_editor.position();
}

void ScriptText::goToLine(int line) {
  m_editor.goToLine(line);
}

bool ScriptText::find(const TextSearch& search, bool isBackwards) {
  return m_editor.find(search, isBackwards);
}

bool ScriptText::replace(const TextSearch& search, std::string_view replacement) {
  if (!m_isEditable || m_pieces.text) return m_editor.find(search, false);
  return m_editor.replace(search, replacement);
}

int ScriptText::replaceAll(const TextSearch& search, std::string_view replacement) {
  if (!m_isEditable || m_pieces.text) return 0;
  return m_editor.replaceAll(search, replacement);
}

void ScriptText::setColoured(bool isColoured) {
  m_editor.setColoured(isColoured);
}

void ScriptText::setIndentation(bool byTabs, int columns) {
  m_editor.setIndentation(byTabs, columns);
}

void ScriptText::zoom(int points) {
  m_editor.zoom(points);
}

bool ScriptText::canPrint() const {
  return m_editor.canPrint();
}

bool ScriptText::print(const QString& title, const QString& file) {
  return m_editor.print(title, file);
}

void ScriptText::setLineNumbersVisible(bool visible) {
  m_editor.setLineNumbersVisible(visible);
}

void ScriptText::setWrapsLines(bool wraps) {
  m_editor.setWrapsLines(wraps);
}

void ScriptText::setEditable(bool editable) {
  m_isEditable = editable;
  if (!m_pieces.text) m_editor.setEditable(editable);
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
