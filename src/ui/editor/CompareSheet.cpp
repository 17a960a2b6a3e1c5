#include "ui/editor/CompareSheet.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>

#include "core/editor/EditorTexts.h"
#include "core/editor/LineDiff.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

QColor changedBackground(const QPalette& palette, bool isMine) {
  if (schemeOf(palette) == Scheme::Dark) return isMine ? QColor(0x1d, 0x45, 0x2b) : QColor(0x55, 0x27, 0x27);
  return isMine ? QColor(0xd8, 0xf3, 0xdd) : QColor(0xfb, 0xdd, 0xdc);
}

/// The lines of one version, with a blank line for each line that only the other version has, so that common lines are
/// side by side.
QPlainTextEdit* makeText(const std::vector<DiffLine>& lines, DiffLine::In side, const QString& name) {
  auto* text = new QPlainTextEdit;
  text->setReadOnly(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  text->setLayoutDirection(Qt::LeftToRight);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text->setTabStopDistance(text->fontMetrics().horizontalAdvance(QLatin1Char(' ')) * 4);
  text->setAccessibleName(name);
  text->setTabChangesFocus(true);

  QTextCursor cursor(text->document());
  QTextBlockFormat changed;
  changed.setBackground(changedBackground(text->palette(), side == DiffLine::In::Mine));
  for (const DiffLine& line : lines) {
    if (&line != &lines.front()) cursor.insertBlock();
    const bool isHere = line.in == DiffLine::In::Both || line.in == side;
    cursor.setBlockFormat(line.in == side ? changed : QTextBlockFormat());
    if (isHere) cursor.insertText(qt(line.text));
  }
  text->moveCursor(QTextCursor::Start);
  return text;
}

}  // namespace

CompareSheet::CompareSheet(const Localize& localize, const Versions& versions,
                           std::function<void(VersionChoice)> completion, QWidget* window)
    : QDialog(window) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  setWindowTitle(qt(EditorTexts(localize).compare()));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(makeTexts(localize, versions), 1);
  auto* buttons = new QDialogButtonBox;
  layout->addWidget(buttons);
  const auto addButton = [&](const std::string& title, QDialogButtonBox::ButtonRole role, VersionChoice choice) {
    QPushButton* const button = buttons->addButton(qt(title), role);
    button->setDefault(choice == VersionChoice::Neither);
    connect(button, &QPushButton::clicked, this, [this, choice] { done(static_cast<int>(choice)); });
  };
  addButton(EditorTexts(localize).keepMine(), QDialogButtonBox::AcceptRole, VersionChoice::Mine);
  addButton(EditorTexts(localize).useTheirs(), QDialogButtonBox::DestructiveRole, VersionChoice::Theirs);
  addButton(localize.cancel(), QDialogButtonBox::RejectRole, VersionChoice::Neither);
  connect(this, &QDialog::finished, this, [completion = std::move(completion)](int choice) {
    completion(static_cast<VersionChoice>(choice));  // `Neither` is the result code of a rejected dialog
  });
  resize(fontMetrics().averageCharWidth() * 130, fontMetrics().lineSpacing() * 32);
}

QWidget* CompareSheet::makeTexts(const Localize& localize, const Versions& versions) {
  auto* texts = new QWidget;
  auto* grid = new QGridLayout(texts);
  grid->setContentsMargins(0, 0, 0, 0);
  const auto lines = lineDiff(versions.mine, versions.theirs);
  auto* mine = makeText(lines, DiffLine::In::Mine, qt(EditorTexts(localize).yourVersion()));
  auto* theirs = makeText(lines, DiffLine::In::Theirs, qt(EditorTexts(localize).versionOnDisk()));
  grid->addWidget(new QLabel(qt(EditorTexts(localize).yourVersion())), 0, 0);
  grid->addWidget(new QLabel(qt(EditorTexts(localize).versionOnDisk())), 0, 1);
  grid->addWidget(mine, 1, 0);
  grid->addWidget(theirs, 1, 1);
  for (auto bar : {&QPlainTextEdit::verticalScrollBar, &QPlainTextEdit::horizontalScrollBar}) {
    QScrollBar* const left = (mine->*bar)();
    QScrollBar* const right = (theirs->*bar)();
    connect(left, &QScrollBar::valueChanged, right, &QScrollBar::setValue);
    connect(right, &QScrollBar::valueChanged, left, &QScrollBar::setValue);
  }
  return texts;
}

}  // namespace mirvel::ui
