#include "ui/editor/RunTextField.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

#include "core/editor/EditorTexts.h"
#include "core/editor/RunMenu.h"
#include "ui/support/InvalidData.h"
#include "ui/support/QtText.h"
#include "ui/support/ReplaceText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

/// What is pasted becomes one line; a command that has more, within its quotes, keeps them.
QString oneLine(QString text) {
  for (const QChar end : {QChar(QLatin1Char('\n')), QChar(QLatin1Char('\r')), QChar(QChar::LineSeparator),
                          QChar(QChar::ParagraphSeparator)}) {
    text.replace(end, QLatin1Char(' '));
  }
  return text;
}

/// The local files of a drag, as they stand in a command.
QString droppedFiles(const QMimeData& data) {
  QStringList files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) files.append(qt(fileWord(path(url.toLocalFile()))));
  }
  return files.join(QLatin1Char(' '));
}

}  // namespace

RunTextField::RunTextField(QWidget* parent) : GrowingText(1, parent) {
  setTabChangesFocus(true);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  // Paths and options are read from left to right in any language.
  QTextOption option = document()->defaultTextOption();
  option.setTextDirection(Qt::LeftToRight);
  document()->setDefaultTextOption(option);
}

std::string RunTextField::text() const {
  return utf8(exactText());
}

std::string RunTextField::selectedText() const {
  return utf8(textCursor().selectedText());
}

void RunTextField::setText(const std::string& text) {
  replaceText(*this, qt(text));
}

void RunTextField::insertCommand(const std::string& command) {
  QTextCursor cursor = textCursor();
  if (cursor.hasSelection()) {
    cursor.insertText(qt(command));
  } else {
    const std::string now = text();
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(qt(withCommand(now, command).substr(now.size())));
  }
  setTextCursor(cursor);
  setFocus();
}

void RunTextField::markInvalid(const QString& what) {
  m_what = what;
  setToolTip(what.isEmpty() ? whatsThis() : shownToolTip(utf8(what)));
  markInvalidData(*this, what);
}

void RunTextField::markMissing(const std::vector<std::filesystem::path>& files, const Localize& localize) {
  QStringList names;
  for (const auto& file : files) names.append(displayText(file));
  markInvalid(names.isEmpty() ? QString() : qt(EditorTexts(localize).notFound(utf8(names.join(QStringLiteral(", "))))));
}

void RunTextField::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return event->ignore();
  GrowingText::keyPressEvent(event);
}

bool RunTextField::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasText() || !droppedFiles(*source).isEmpty();
}

void RunTextField::insertFromMimeData(const QMimeData* source) {
  const QString files = droppedFiles(*source);
  textCursor().insertText(files.isEmpty() ? oneLine(source->text()) : files);
  setFocus();
}

void RunTextField::changeEvent(QEvent* event) {
  GrowingText::changeEvent(event);
  if (event->type() == QEvent::ApplicationPaletteChange) markInvalidData(*this, m_what);
}

}  // namespace mirvel::ui
