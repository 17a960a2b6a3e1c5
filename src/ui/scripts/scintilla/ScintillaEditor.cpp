#include "ui/scripts/scintilla/ScintillaEditor.h"

#include <Qsci/qscicommandset.h>
#include <Qsci/qscilexer.h>

#include <QGraphicsEffect>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <algorithm>

#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/scintilla/PrintScript.h"
#include "ui/scripts/scintilla/ScintillaSearch.h"
#include "ui/scripts/scintilla/ScriptLexer.h"
#include "ui/scripts/scintilla/ScriptStyle.h"
#include "ui/scripts/scintilla/TextColumns.h"

namespace mirvel::ui {

namespace {

constexpr int tabColumns = 4;
constexpr int numbersMargin = 0;
constexpr int faultyLineMarker = 0;
/// Some lexers take time quadratic in the length of a line, and nobody reads lines of this length.
constexpr long mostColouredColumns = 10000;

/// Whether the key combines Control with a letter, except for the combinations common to all text widgets.
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

/// Draws a widget with painters that lay out text from left to right. Otherwise they would have the direction of the
/// application. As Scintilla draws each piece of a line by itself, the punctuation at its ends would change sides.
class LeftToRightEffect final : public QGraphicsEffect {
 protected:
  void draw(QPainter* painter) override {
    const QRect place = boundingRect().toAlignedRect();
    const qreal ratio = painter->device()->devicePixelRatio();
    QPixmap picture((QSizeF(place.size()) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter leftToRight(&picture);
    leftToRight.setLayoutDirection(Qt::LeftToRight);
    leftToRight.translate(-place.topLeft());
    drawSource(&leftToRight);
    leftToRight.end();
    painter->drawPixmap(place.topLeft(), picture);
  }
};

}  // namespace

ScintillaEditor::ScintillaEditor(QWidget* parent) : QsciScintilla(parent) {
  prepare();
  leaveKeysToMenus();
  connect(this, &QsciScintilla::textChanged, this, &ScintillaEditor::textHasChanged);
  connect(this, &QsciScintilla::cursorPositionChanged, this, [this] { notifyMoved(); });
  connect(this, &QsciScintillaBase::SCN_ZOOM, this, [this] {
    fitMargin();
    fitScrollWidth();
  });
}

ScintillaEditor::~ScintillaEditor() {
  setLexer(nullptr);
}

void ScintillaEditor::prepare() {
  if (QGuiApplication::isRightToLeft()) viewport()->setGraphicsEffect(new LeftToRightEffect);
  setUtf8(true);
  setWrapMode(WrapNone);
  setTabWidth(tabColumns);
  setIndentationsUseTabs(true);
  setTabIndents(false);
  setAutoIndent(true);
  setCaretLineVisible(true);
  markerDefine(Background, faultyLineMarker);
  setMarginType(numbersMargin, NumberMargin);
  for (int margin = 1; margin < margins(); ++margin) setMarginWidth(margin, 0);
  SendScintilla(SCI_SETLAYOUTCACHE, static_cast<long>(SC_CACHE_PAGE));
  SendScintilla(SCI_SETIDLESTYLING, static_cast<long>(SC_IDLESTYLING_TOVISIBLE));
  setScrollWidthTracking(true);  // for characters wider than the font's average
}

void ScintillaEditor::leaveKeysToMenus() {
  for (QsciCommand* command : standardCommands()->commands()) {
    if (isKeyOfMenus(command->key())) command->setKey(0);
    if (isKeyOfMenus(command->alternateKey())) command->setAlternateKey(0);
  }
  const QKeySequence redo(QKeySequence::Redo);
  standardCommands()->find(QsciCommand::Redo)->setAlternateKey(redo[0].toCombined());
}

std::string_view ScintillaEditor::content() const {
  const auto size = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  return {static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER)), size};
}

std::string ScintillaEditor::bytes() const {
  return std::string(content());
}

void ScintillaEditor::setBytes(std::string_view text) {
  const bool isChange = !text.empty() || SendScintilla(SCI_GETLENGTH) > 0;
  beginBytes();
  appendBytes(text);
  finishBytes(lineEndOf(text));
  if (isChange) emit textChanged();
}

/// Without notifications until the text is complete.
void ScintillaEditor::beginBytes() {
  m_readOnlyBefore = isReadOnly();
  setReadOnly(false);  // Scintilla would ignore the new text, too
  const long events = SendScintilla(SCI_GETMODEVENTMASK);
  if (events != 0) m_eventsBefore = events;  // otherwise another text was being inserted
  SendScintilla(SCI_SETMODEVENTMASK, 0L);
  useDocument();
  SendScintilla(SCI_SETUNDOCOLLECTION, 0L);
  SendScintilla(SCI_CLEARALL);
  setReadOnly(true);
}

/// A document without styles for a text without colours: its buffers have half the size, so that growing them blocks
/// half as long. What Scintilla keeps with a document is taken along.
void ScintillaEditor::useDocument() {
  if (m_isColoured == m_hasStyles) return;
  m_hasStyles = m_isColoured;
  const bool usesTabs = indentationsUseTabs(), isIndentedByTab = tabIndents();
  const int indentation = indentationWidth();
  setLexer(nullptr);
  const long options = m_hasStyles ? SC_DOCUMENTOPTION_DEFAULT : SC_DOCUMENTOPTION_STYLES_NONE;
  const long document = SendScintilla(SCI_CREATEDOCUMENT, 0UL, options);
  SendScintilla(SCI_SETDOCPOINTER, 0UL, document);
  SendScintilla(SCI_RELEASEDOCUMENT, 0UL, document);  // the widget has it now
  setUtf8(true);
  setTabWidth(tabColumns);
  setIndentationsUseTabs(usesTabs);
  setTabIndents(isIndentedByTab);
  setIndentationWidth(indentation);
  useLexer();
}

void ScintillaEditor::appendBytes(std::string_view piece) {
  setReadOnly(false);
  SendScintilla(SCI_APPENDTEXT, static_cast<uintptr_t>(piece.size()), piece.data());
  setReadOnly(true);
}

void ScintillaEditor::endBytes(std::string_view lineEnd) {
  finishBytes(lineEnd);
  emit textChanged();
}

void ScintillaEditor::finishBytes(std::string_view lineEnd) {
  setReadOnly(false);
  SendScintilla(SCI_SETMODEVENTMASK, m_eventsBefore);
  SendScintilla(SCI_SETUNDOCOLLECTION, 1L);
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  setModified(false);
  setReadOnly(m_readOnlyBefore);
  setInsertionPoint(0);
  setEolMode(lineEnd == "\n" ? EolUnix : lineEnd == "\r" ? EolMac : EolWindows);
}

void ScintillaEditor::replaceBytes(std::string_view text) {
  const std::size_t point = insertionPoint();
  SendScintilla(SCI_TARGETWHOLEDOCUMENT);
  SendScintilla(SCI_REPLACETARGET, static_cast<uintptr_t>(text.size()), text.data());
  setInsertionPoint(point);
}

TextPosition ScintillaEditor::position() const {
  const auto point = static_cast<unsigned long>(SendScintilla(SCI_GETCURRENTPOS));
  const long line = SendScintilla(SCI_LINEFROMPOSITION, point);
  const auto start = static_cast<unsigned long>(SendScintilla(SCI_POSITIONFROMLINE, static_cast<unsigned long>(line)));
  const long column = SendScintilla(SCI_COUNTCHARACTERS, start, static_cast<long>(point));
  return {static_cast<int>(line) + 1, static_cast<int>(column) + 1};
}

void ScintillaEditor::goToLine(int line) {
  const auto index = static_cast<unsigned long>(std::max(line, 1) - 1);
  if (line <= lines()) return void(SendScintilla(SCI_GOTOLINE, index));
  setInsertionPoint(static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH)));
}

bool ScintillaEditor::find(const TextSearch& search, bool isBackwards) {
  return findIn(*this, search, isBackwards);
}

bool ScintillaEditor::replace(const TextSearch& search, std::string_view replacement) {
  return replaceIn(*this, search, replacement);
}

int ScintillaEditor::replaceAll(const TextSearch& search, std::string_view replacement) {
  return replaceAllIn(*this, search, replacement);
}

void ScintillaEditor::setColoured(bool isColoured) {
  if (isColoured == m_isColoured) return;
  m_isColoured = isColoured;
  setSyntax(m_syntax);
}

void ScintillaEditor::setIndentation(bool byTabs, int columns) {
  setIndentationsUseTabs(byTabs);
  setTabIndents(!byTabs);
  setIndentationWidth(byTabs ? 0 : columns);
}

void ScintillaEditor::zoom(int points) {
  points == 0 ? zoomTo(0) : zoomIn(points);
}

bool ScintillaEditor::print(const QString& title, const QString& file) {
  return printScript(*this, title, file);
}

void ScintillaEditor::setSyntax(SyntaxType type) {
  m_syntax = type;
  dropLexer();
  m_lexer = m_isColoured ? makeScriptLexer(type) : nullptr;
  if (m_lexer) styleLexer(*m_lexer, type, m_look);
  useLexer();
  applyStyle();
}

void ScintillaEditor::useLexer() {
  QsciLexer* const wanted = m_widestLine <= mostColouredColumns ? m_lexer.get() : nullptr;
  if (lexer() == wanted) return;
  if (!wanted) dropLexer();
  if (wanted) setLexer(wanted);
  applyStyle();
}

/// Without a lexer only the default style remains, so all text is drawn in the script font.
void ScintillaEditor::dropLexer() {
  setLexer(nullptr);
  SendScintilla(SCI_CLEARDOCUMENTSTYLE);
}

void ScintillaEditor::setLook(const ScriptLook& look) {
  m_look = look;
  applyStyle();
}

std::size_t ScintillaEditor::insertionPoint() const {
  return static_cast<std::size_t>(SendScintilla(SCI_GETCURRENTPOS));
}

void ScintillaEditor::setInsertionPoint(std::size_t point) {
  const auto end = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  const auto near = static_cast<unsigned long>(std::min(point, end));
  const long before = SendScintilla(SCI_POSITIONBEFORE, near);
  SendScintilla(SCI_GOTOPOS, near == 0 ? 0 : SendScintilla(SCI_POSITIONAFTER, before));
}

void ScintillaEditor::setLineNumbersVisible(bool visible) {
  m_lineNumbers = visible;
  fitMargin();
}

void ScintillaEditor::markLine(std::optional<std::size_t> point) {
  markerDeleteAll(faultyLineMarker);
  setCaretLineVisible(!point);  // it would hide the mark
  if (!point) return;
  const auto end = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  const auto position = static_cast<unsigned long>(std::min(*point, end));
  markerAdd(static_cast<int>(SendScintilla(SCI_LINEFROMPOSITION, position)), faultyLineMarker);
}

/// Makes new lines end like the first one, which an edit or its undoing can have changed.
void ScintillaEditor::followLineEnd() {
  if (lines() < 2) return;
  const long start = SendScintilla(SCI_GETLINEENDPOSITION, 0UL), end = SendScintilla(SCI_POSITIONFROMLINE, 1UL);
  const bool isReturn = SendScintilla(SCI_GETCHARAT, static_cast<unsigned long>(start)) == '\r';
  setEolMode(!isReturn ? EolUnix : end - start == 1 ? EolMac : EolWindows);
}

void ScintillaEditor::textHasChanged() {
  followLineEnd();
  // In a large text, Scintilla finds the width of the lines that it shows.
  m_widestLine = m_isColoured ? widestLine(content(), tabColumns) : 0;
  useLexer();
  if (m_isColoured) styleInterpreterLine(*this, m_syntax, m_look);
  fitMargin();
  fitScrollWidth();
  notifyChanged();
}

void ScintillaEditor::applyStyle() {
  if (m_lexer) styleLexer(*m_lexer, m_syntax, m_look);
  styleSurroundings(*this, m_look);
  setMarkerBackgroundColor(m_look.faultyLine, faultyLineMarker);
  styleInterpreterLine(*this, m_syntax, m_look);
  fitMargin();
  fitScrollWidth();
}

long ScintillaEditor::characterWidth() const {
  return SendScintilla(SCI_TEXTWIDTH, static_cast<uintptr_t>(STYLE_DEFAULT), "0");
}

void ScintillaEditor::fitMargin() {
  constexpr qsizetype fewestDigits = 2;
  const qsizetype digits = std::max(fewestDigits, QString::number(lines()).size());
  // One more digit than needed serves as padding.
  setMarginWidth(numbersMargin, m_lineNumbers ? QString(digits + 1, QLatin1Char('9')) : QString());
  SendScintilla(SCI_SETMARGINLEFT, 0UL, characterWidth() / 2);
}

void ScintillaEditor::fitScrollWidth() {
  const long columns = m_widestLine + 1;  // including the insertion point
  constexpr long widest = 1L << 30;
  setScrollWidth(static_cast<int>(std::min(characterWidth() * columns, widest)));
}

void ScintillaEditor::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return event->ignore();  // it closes sheets
  const Exit exit = exitOf(*event, hasSelection(), !isReadOnly());
  if (exit == Exit::None) return QsciScintilla::keyPressEvent(event);
  QWidget::focusNextPrevChild(exit == Exit::Next);  // NOLINT(bugprone-parent-virtual-call): its own stays
}

}  // namespace mirvel::ui
