#include "ui/editor/NotesSection.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "ui/editor/GrowingText.h"
#include "ui/editor/OwnUndo.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// A text in which Return and Tab are signs as any other. With Shift or Control the Tab key leaves it.
class NoteField final : public GrowingText {
 public:
  NoteField() : GrowingText(4) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool isBack = event->key() == Qt::Key_Backtab;
    const bool isForth = event->key() == Qt::Key_Tab && event->modifiers().testFlag(Qt::ControlModifier);
    if (isBack || isForth) {
      (void)QWidget::focusNextPrevChild(isForth);  // NOLINT(bugprone-parent-virtual-call): a text keeps the Tab key
    } else {
      GrowingText::keyPressEvent(event);
    }
  }
};

}  // namespace

NotesSection::NotesSection(Program& theProgram) : Section(theProgram), m_textField(new NoteField) {
  m_textField->setAccessibleName(qt(localize().notes()));
  m_textField->setObjectName(QStringLiteral("notesTextField"));
  keepOwnUndo(*m_textField);
  auto* grid = new SectionGrid(this);
  grid->addRow(*m_textField);
  connect(m_textField, &QPlainTextEdit::textChanged, this, [this] {
    const auto job = program().selection.job();  // a scan may have made it anew
    if (job && !isFilling()) program().notes.setNote(job->url, utf8(m_textField->exactText()));
  });
}

void NotesSection::fill(const Launchd& launchd) {
  m_textField->setPlainText(qt(program().notes.note(launchd.url)));
}

}  // namespace mirvel::ui
