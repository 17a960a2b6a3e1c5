#include "ui/editor/NotesSection.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "core/editor/EditorTexts.h"
#include "core/editor/NotesStore.h"
#include "core/session/Selection.h"
#include "ui/editor/GrowingText.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

/// A text field in which Return and Tab enter characters. Shift-Tab and Control-Tab move the focus.
class NoteField final : public GrowingText {
 public:
  NoteField() : GrowingText(4) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool isBack = event->key() == Qt::Key_Backtab;
    const bool isForth = event->key() == Qt::Key_Tab && event->modifiers().testFlag(Qt::ControlModifier);
    if (isBack || isForth) {
      (void)QWidget::focusNextPrevChild(isForth);  // NOLINT(bugprone-parent-virtual-call): text fields keep Tab
    } else {
      GrowingText::keyPressEvent(event);
    }
  }
};

}  // namespace

void keepOwnUndo(QWidget& field) {
  field.setProperty("keepsOwnUndo", true);
}

bool keepsOwnUndo(const QWidget& field) {
  return field.property("keepsOwnUndo").toBool();
}

NotesSection::NotesSection(const EditorContext& theContext) : Section(theContext), m_textField(new NoteField) {
  m_textField->setAccessibleName(qt(EditorTexts(localize()).notes()));
  m_textField->setObjectName(QStringLiteral("notesTextField"));
  keepOwnUndo(*m_textField);
  auto* grid = new SectionGrid(this);
  grid->addRow(*m_textField);
  connect(m_textField, &QPlainTextEdit::textChanged, this, [this] {
    const auto job = context().selection.job();  // not `launchd()`, which a scan may have replaced
    if (job && !isFilling()) context().notes.setNote(job->url, utf8(m_textField->exactText()));
  });
}

void NotesSection::fill(const Launchd& launchd) {
  replaceText(*m_textField, qt(context().notes.note(launchd.url)));
}

}  // namespace mirvel::ui
