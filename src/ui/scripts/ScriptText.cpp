#include "ui/scripts/ScriptText.h"

#include <Qsci/qscicommandset.h>
#include <Qsci/qscilexer.h>

#include <QKeyEvent>
#include <algorithm>

#include "core/scripts/SyntaxHelper.h"
#include "ui/scripts/ScriptLexer.h"
#include "ui/scripts/ScriptStyle.h"
#include "ui/scripts/TextColumns.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr int tabColumns = 4;
constexpr int numbersMargin = 0;
/// Some lexers take time that grows with the square of a line's length, and nobody reads such lines.
constexpr long mostColouredColumns = 10'000;

/// A combination of Control and a letter, other than those that every text widget knows.
bool isKeyOfMenus(int key) {
  const QKeySequence sequence(key);
  for (const auto standard : {QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Cut, QKeySequence::Copy,
                              QKeySequence::Paste, QKeySequence::SelectAll}) {
    if (QKeySequence::keyBindings(standard).contains(sequence)) return false;
  }
  const auto bits = static_cast<unsigned>(key);
  const unsigned letter = bits & ~static_cast<unsigned>(Qt::KeyboardModifierMask);
  return (bits & Qt::ControlModifier) != 0 && letter >= Qt::Key_A && letter <= Qt::Key_Z;
}

/// Whether a key leaves the widget instead of changing its text.
bool leaves(const QKeyEvent& event, bool hasSelection) {
  if (event.key() != Qt::Key_Tab && event.key() != Qt::Key_Backtab) return false;
  const bool isBack = event.key() == Qt::Key_Backtab || event.modifiers().testFlag(Qt::ShiftModifier);
  return (event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) || (isBack && !hasSelection);
}

}  // namespace

ScriptText::ScriptText(const QString& name, QWidget* parent) : QsciScintilla(parent) {
  setAccessibleName(name);
  setLayoutDirection(Qt::LeftToRight);
  prepare();
  leaveKeysToMenus();
  connect(this, &QsciScintilla::textChanged, this, &ScriptText::textHasChanged);
  connect(this, &QsciScintillaBase::SCN_ZOOM, this, [this] {
    fitMargin();
    fitScrollWidth();
  });
  applyStyle();
}

ScriptText::~ScriptText() {
  setLexer(nullptr);
}

void ScriptText::prepare() {
  setUtf8(true);
  setWrapMode(WrapNone);
  setTabWidth(tabColumns);
  setIndentationsUseTabs(true);
  setTabIndents(false);
  setAutoIndent(true);
  setCaretLineVisible(true);
  setMarginType(numbersMargin, NumberMargin);
  for (int margin = 1; margin < margins(); ++margin) setMarginWidth(margin, 0);
  SendScintilla(SCI_SETLAYOUTCACHE, static_cast<long>(SC_CACHE_PAGE));
  SendScintilla(SCI_SETIDLESTYLING, static_cast<long>(SC_IDLESTYLING_TOVISIBLE));
  setScrollWidthTracking(true);  // for characters that are wider than those of the font
}

void ScriptText::leaveKeysToMenus() {
  for (QsciCommand* command : standardCommands()->commands()) {
    if (isKeyOfMenus(command->key())) command->setKey(0);
    if (isKeyOfMenus(command->alternateKey())) command->setAlternateKey(0);
  }
  const QKeySequence redo(QKeySequence::Redo);
  standardCommands()->find(QsciCommand::Redo)->setAlternateKey(redo[0].toCombined());
}

std::string_view ScriptText::bytes() const {
  const auto size = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  return {static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER)), size};
}

std::string ScriptText::text() const {
  return std::string(bytes());
}

void ScriptText::setText(std::string_view text) {
  const long events = SendScintilla(SCI_GETMODEVENTMASK);
  SendScintilla(SCI_SETUNDOCOLLECTION, 0L);
  if (!text.empty()) SendScintilla(SCI_SETMODEVENTMASK, 0L);  // the text isn't empty in between
  SendScintilla(SCI_CLEARALL);
  SendScintilla(SCI_SETMODEVENTMASK, events);
  SendScintilla(SCI_APPENDTEXT, static_cast<uintptr_t>(text.size()), text.data());
  SendScintilla(SCI_SETUNDOCOLLECTION, 1L);
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  setModified(false);
  setInsertionPoint(0);
  followLineEnds();
}

void ScriptText::setText(const QString& text) {
  setText(std::string_view(utf8(text)));
}

void ScriptText::setSyntax(SyntaxType type) {
  if (type == m_syntax) return;
  m_syntax = type;
  setLexer(nullptr);
  m_lexer = makeScriptLexer(type);
  if (m_lexer) styleLexer(*m_lexer, type, palette(), scriptFont());
  useLexer();
  applyStyle();
  emit syntaxChanged();
}

void ScriptText::useLexer() {
  QsciLexer* const wanted = m_widestLine <= mostColouredColumns ? m_lexer.get() : nullptr;
  if (lexer() == wanted) return;
  setLexer(wanted);
  applyStyle();
}

void ScriptText::setDetectsSyntax(bool detects) {
  m_detectsSyntax = detects;
  detectSyntax();
}

void ScriptText::detectSyntax() {
  if (!m_detectsSyntax) return;
  if (const auto type = SyntaxHelper::syntaxOfText(bytes())) setSyntax(*type);
}

std::size_t ScriptText::insertionPoint() const {
  return static_cast<std::size_t>(SendScintilla(SCI_GETCURRENTPOS));
}

void ScriptText::setInsertionPoint(std::size_t point) {
  const auto end = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  const auto near = static_cast<unsigned long>(std::min(point, end));
  const long before = SendScintilla(SCI_POSITIONBEFORE, near);
  SendScintilla(SCI_GOTOPOS, near == 0 ? 0 : SendScintilla(SCI_POSITIONAFTER, before));
}

void ScriptText::setLineNumbersVisible(bool visible) {
  m_lineNumbers = visible;
  fitMargin();
}

void ScriptText::textHasChanged() {
  m_widestLine = widestLine(bytes(), tabColumns);
  detectSyntax();
  useLexer();
  styleInterpreterLine(*this, m_syntax, palette());
  fitMargin();
  fitScrollWidth();
}

void ScriptText::applyStyle() {
  const QFont font = scriptFont();
  if (m_lexer) styleLexer(*m_lexer, m_syntax, palette(), font);
  styleSurroundings(*this, palette(), font);
  styleInterpreterLine(*this, m_syntax, palette());
  fitMargin();
  fitScrollWidth();
}

long ScriptText::characterWidth() const {
  return SendScintilla(SCI_TEXTWIDTH, static_cast<uintptr_t>(STYLE_DEFAULT), "0");
}

void ScriptText::fitMargin() {
  constexpr qsizetype fewestDigits = 2;
  const qsizetype digits = std::max(fewestDigits, QString::number(lines()).size());
  // One more is the room beside them.
  setMarginWidth(numbersMargin, m_lineNumbers ? QString(digits + 1, QLatin1Char('9')) : QString());
  SendScintilla(SCI_SETMARGINLEFT, 0UL, characterWidth() / 2);
}

void ScriptText::fitScrollWidth() {
  const long columns = m_widestLine + 1;  // with room for the insertion point
  constexpr long widest = 1L << 30;
  setScrollWidth(static_cast<int>(std::min(characterWidth() * columns, widest)));
}

void ScriptText::followLineEnds() {
  const std::string_view text = bytes();
  const auto end = text.find_first_of("\r\n");
  const bool isReturn = end != std::string_view::npos && text[end] == '\r';
  const bool isWindows = isReturn && text.substr(end).starts_with("\r\n");
  setEolMode(isWindows ? EolWindows : isReturn ? EolMac : EolUnix);
}

void ScriptText::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  const auto type = event->type();
  if (type == QEvent::PaletteChange || type == QEvent::ApplicationFontChange) applyStyle();
}

void ScriptText::keyPressEvent(QKeyEvent* event) {
  if (!leaves(*event, hasSelectedText())) return QsciScintilla::keyPressEvent(event);
  const bool isBack = event->key() == Qt::Key_Backtab || event->modifiers().testFlag(Qt::ShiftModifier);
  QWidget::focusNextPrevChild(!isBack);  // QScintilla's own would stay
}

}  // namespace mirvel::ui
