#include "ui/editor/RunTextField.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include "core/editor/EditorTexts.h"
#include "core/editor/RunField.h"
#include "core/locale/Localize.h"
#include "core/session/Shell.h"
#include "ui/editor/ChooseFile.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

/// Pasted text as one line. A command from a file may have line breaks within quotes; those are kept.
QString oneLine(QString text) {
  for (const QChar end : {QChar(QLatin1Char('\n')), QChar(QLatin1Char('\r')), QChar(QChar::LineSeparator),
                          QChar(QChar::ParagraphSeparator)}) {
    text.replace(end, QLatin1Char(' '));
  }
  return text;
}

/// The local files of a drag, quoted as arguments of a command.
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
  // Paths and options are read from left to right even in right-to-left languages.
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
  const bool isShort = fitsIntoLine(text);
  setReadOnly(!isShort);
  replaceText(*this, isShort ? qt(text) : shownText(text));
}

void RunTextField::insertCommand(const std::string& command) {
  if (isReadOnly()) return;
  m_isInsertingCommand = true;
  QTextCursor cursor = textCursor();
  if (cursor.hasSelection()) {
    cursor.insertText(qt(command));
  } else {
    const std::string now = text();
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(qt(withCommand(now, command).substr(now.size())));
  }
  m_isInsertingCommand = false;
  setTextCursor(cursor);
  setFocus();
}

void RunTextField::markInvalid(const QString& reason) {
  m_invalidReason = reason;
  setToolTip(reason.isEmpty() ? whatsThis() : shownToolTip(utf8(reason)));
  markInvalidData(*this, reason);
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
  if (event->type() == QEvent::ApplicationPaletteChange) markInvalidData(*this, m_invalidReason);
}

RunMenuButton::RunMenuButton(const Platform& platform, const Shell& shell, const CommandRepairs& repairs,
                             const Localize& localize, RunTextField& field)
    : m_platform(platform),
      m_shell(shell),
      m_repairs(repairs),
      m_localize(localize),
      m_field(field),
      m_menu(new QMenu(this)) {
  const QString name = qt(EditorTexts(localize).actions());
  setIcon(IconLoader::symbol("view-more"));
  setAccessibleName(name);
  setToolTip(name);
  setAutoRaise(true);
  // `setMenu` would make the style draw an arrow beside the icon.
  connect(this, &QToolButton::clicked, this, [this] {
    fill();
    m_menu->popup(mapToGlobal(rect().bottomLeft()));
  });
}

void RunMenuButton::fill() {
  const RunMenu content = RunMenu::of(m_shell, m_repairs, m_field.text(), m_field.selectedText());
  m_menu->clear();
  QAction* const chooseAction = m_menu->addAction(qt(m_localize.ellipsis().choose()), this, [this] { choose(); });
  chooseAction->setEnabled(!m_field.isReadOnly());
  if (content.offersTest) {
    m_menu->addAction(qt(EditorTexts(m_localize).test()), this, [this] { m_shell.sheets.at(Sheet::Test)(); });
  }
  if (!content.file) return;
  m_menu->addSeparator();
  m_menu->addAction(qt(m_localize.revealInFinder()), this,
                    [this, file = *content.file] { m_platform.workspace.reveal(URL::file(file)); });
  if (!content.offersEdit) return;
  m_menu->addAction(qt(EditorTexts(m_localize).editScript()).remove(QChar(0x2026)).trimmed(), this,
                    [this, file = *content.file] { m_shell.editScript(URL::file(file)); });
}

void RunMenuButton::choose() {
  const auto file = chooseFile(*this, m_platform, {.showsHiddenFiles = optionHeld()});
  if (file) m_field.insertCommand(chosenCommand(m_repairs, *file));
}

}  // namespace mirvel::ui
