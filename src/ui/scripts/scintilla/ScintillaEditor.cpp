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
  const bool wasReadOnly = isReadOnly();
  setReadOnly(false);  // Scintilla would ignore the new text, too
  const long events = SendScintilla(SCI_GETMODEVENTMASK);
  SendScintilla(SCI_SETUNDOCOLLECTION, 0L);
  if (!text.empty())
    SendScintilla(SCI_SETMODEVENTMASK, 0L);  // avoids a notification while the text is empty in between
  SendScintilla(SCI_CLEARALL);
  SendScintilla(SCI_SETMODEVENTMASK, events);
  SendScintilla(SCI_APPENDTEXT, static_cast<uintptr_t>(text.size()), text.data());
  SendScintilla(SCI_SETUNDOCOLLECTION, 1L);
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  setModified(false);
  setReadOnly(wasReadOnly);
  setInsertionPoint(0);
  const std::string_view end = lineEndOf(text);
  setEolMode(end == "\n" ? EolUnix : end == "\r" ? EolMac : EolWindows);
}

void ScintillaEditor::setSyntax(SyntaxType type) {
  m_syntax = type;
  dropLexer();
  m_lexer = makeScriptLexer(type);
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

void ScintillaEditor::textHasChanged() {
  m_widestLine = widestLine(content(), tabColumns);
  useLexer();
  styleInterpreterLine(*this, m_syntax, m_look);
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
