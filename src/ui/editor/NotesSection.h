#pragma once

#include "ui/editor/Section.h"

namespace mirvel::ui {

class GrowingText;

/// Marks a field whose text isn't part of the job file, so that Undo in it applies to the field and not to the editor.
void keepOwnUndo(QWidget& field);
bool keepsOwnUndo(const QWidget& field);

/// The user's note on a job. It isn't part of the job file, and can be edited in the read-only details as well.
class NotesSection final : public Section {
 public:
  explicit NotesSection(const EditorContext& context);

 private:
  void fill(const Launchd& launchd) override;

  GrowingText* m_textField;
};

}  // namespace mirvel::ui
