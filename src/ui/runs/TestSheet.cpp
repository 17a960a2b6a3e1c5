#include "ui/runs/TestSheet.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QTextOption>
#include <QVBoxLayout>
#include <memory>

#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/runs/TestTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/text/Bidirectional.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

/// Keeps the end of a growing text in view, unless the user has scrolled elsewhere or selected something. It also does
/// when the view becomes smaller.
void followEnd(QPlainTextEdit& text) {
  QScrollBar& bar = *text.verticalScrollBar();
  auto follows = std::make_shared<bool>(true);
  QObject::connect(&bar, &QScrollBar::valueChanged, &text,
                   [&bar, follows](int value) { *follows = value == bar.maximum(); });
  QObject::connect(&bar, &QScrollBar::rangeChanged, &text, [&text, &bar, follows](int, int maximum) {
    if (*follows && !text.textCursor().hasSelection()) bar.setValue(maximum);
  });
}

const char* iconNameOf(TestRun::Grade grade) {
  switch (grade) {
    case TestRun::Grade::Good:
      return "mirvel-succeeded";
    case TestRun::Grade::Bad:
      return "mirvel-failed";
    case TestRun::Grade::Unclear:
      return "mirvel-unclear";
    case TestRun::Grade::None:
      break;
  }
  return nullptr;
}

}  // namespace

TestSheet::TestSheet(const EditorContext& context, const std::shared_ptr<Launchd>& job, QWidget& window)
    : SheetViewController(window, context.foundation.defaults, "Test sheet"),
      m_context(context),
      m_job(job),
      m_test({context.actions, context.repairs, context.platform.mainQueue, context.foundation.localize,
              context.foundation.roots}) {
  makeContent();
  restoreSize({fontMetrics().averageCharWidth() * 100, fontMetrics().lineSpacing() * 28});
  m_changed = m_test.changed().subscribe([this] { showState(); });
  m_outputChanged = m_test.outputChanged().subscribe([this] { showOutput(); });
  start();
  m_text->setFocus();
}

void TestSheet::makeContent() {
  const Localize& localize = m_context.foundation.localize;
  auto* const layout = new QVBoxLayout(this);
  auto* const title = new ElidedLabel;
  title->setObjectName(QStringLiteral("titleTextField"));
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  const std::string text = bidirectionalString({TestTexts(localize).test(), m_job->plist().name}, Const::separator,
                                               localize.isRightToLeft());
  title->setFullText(shownText(text));
  setWindowTitle(shownText(text).simplified());
  layout->addWidget(title);

  m_text = new QPlainTextEdit;
  m_text->setObjectName(QStringLiteral("textView"));
  m_text->setAccessibleName(qt(TestTexts(localize).output()));
  m_text->setReadOnly(true);
  m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  m_text->setTabChangesFocus(true);
  m_text->setUndoRedoEnabled(false);
  m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  QTextOption option = m_text->document()->defaultTextOption();
  option.setTextDirection(Qt::LeftToRight);  // as in a terminal, in any language
  m_text->document()->setDefaultTextOption(option);
  m_text->setLayoutDirection(Qt::LeftToRight);
  constexpr int fewestLines = 4;
  m_text->setMinimumHeight(m_text->fontMetrics().lineSpacing() * fewestLines);
  followEnd(*m_text);
  layout->addWidget(m_text, 1);
  makeVerdict(*layout);
  makeButtons(*layout);
}

void TestSheet::makeVerdict(QVBoxLayout& layout) {
  auto* const row = new QHBoxLayout;
  m_icon = new QLabel;
  m_verdict = new QLabel;
  m_verdict->setObjectName(QStringLiteral("verdict"));
  m_verdict->setForegroundRole(QPalette::Text);
  m_verdict->setTextFormat(Qt::PlainText);
  m_verdict->setWordWrap(true);
  m_verdict->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_progress = new QProgressBar;
  m_progress->setObjectName(QStringLiteral("progressIndicator"));
  m_progress->setRange(0, 0);
  m_progress->setTextVisible(false);
  m_progress->setMaximumWidth(fontMetrics().averageCharWidth() * 14);
  row->addWidget(m_icon);
  row->addWidget(m_verdict, 1);
  row->addWidget(m_progress);
  row->addStrut(m_progress->sizeHint().height());  // so that nothing moves at the end
  m_details = new SecondaryLabel({});
  m_details->setObjectName(QStringLiteral("details"));
  m_details->setTextFormat(Qt::PlainText);
  m_details->setWordWrap(true);
  layout.addLayout(row);
  layout.addWidget(m_details);
}

void TestSheet::makeButtons(QVBoxLayout& layout) {
  auto* const buttons = new QDialogButtonBox;
  m_runButton = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
  m_runButton->setObjectName(QStringLiteral("runButton"));
  m_runButton->setAutoDefault(false);
  connect(m_runButton, &QPushButton::clicked, this, &TestSheet::stopOrRunAgain);
  auto* const close =
      buttons->addButton(qt(TestTexts(m_context.foundation.localize).close()), QDialogButtonBox::RejectRole);
  close->setObjectName(QStringLiteral("closeButton"));
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  layout.addWidget(buttons);
}

/// A scan may have read the job again since the sheet was opened.
void TestSheet::start() {
  const auto selected = m_context.selection.launchd();
  if (selected && selected->url.equalTo(m_job->url)) m_job = selected;
  EditType* const editor = m_context.shell.edit;
  if (const auto invalid = editor ? editor->refuse() : std::nullopt) return m_test.refuse(*invalid);
  m_test.start(*m_job);
}

void TestSheet::stopOrRunAgain() {
  m_test.canStop() ? m_test.stop() : start();
}

void TestSheet::showState() {
  const TestTexts texts(m_context.foundation.localize);
  m_verdict->setText(shownText(m_test.verdict()));
  m_details->setText(shownText(m_test.details()));
  m_details->setVisible(!m_test.details().empty());
  m_progress->setVisible(m_test.isBusy());
  m_runButton->setText(qt(m_test.canStop() ? texts.stop() : texts.runAgain()));
  m_text->setPlaceholderText(qt(m_test.placeholder()));
  m_text->viewport()->update();  // Qt doesn't replace one placeholder by another
  showGrade();
  makeRoom();
}

/// Layouts of windows don't consider that a narrow label needs more lines.
void TestSheet::makeRoom() {
  setMinimumHeight(layout()->totalMinimumHeightForWidth(width()));
}

void TestSheet::resizeEvent(QResizeEvent* event) {
  SheetViewController::resizeEvent(event);
  makeRoom();
}

void TestSheet::showGrade() {
  const char* const name = iconNameOf(m_test.grade());
  const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  m_icon->setVisible(name != nullptr);
  if (name) m_icon->setPixmap(m_context.icons.icon(Image::named(name)).pixmap({size, size}, devicePixelRatio()));
  markInvalidData(*m_verdict, m_test.grade() == TestRun::Grade::Bad ? m_verdict->text() : QString());
}

/// Replaces only what differs, since a job can print much and often.
void TestSheet::showOutput() {
  const std::string& beginning = m_test.beginning();
  if (!beginning.starts_with(m_shown)) {
    m_shown.clear();
    m_shownLength = 0;
  }
  QTextCursor cursor(m_text->document());
  cursor.beginEditBlock();
  cursor.setPosition(m_shownLength);
  cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
  cursor.insertText(qt(std::string_view(beginning).substr(m_shown.size())));
  m_shownLength = cursor.position();
  cursor.insertText(qt(m_test.rest()));
  cursor.endEditBlock();
  m_shown = beginning;
}

void TestSheet::changeEvent(QEvent* event) {
  SheetViewController::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && m_icon) showGrade();
}

}  // namespace mirvel::ui
