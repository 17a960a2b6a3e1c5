#pragma once

#include "ui/editor/Section.h"

namespace mirvel::ui {

class GrowingText;

/// Marks a field whose text isn't part of the job: it undoes its own changes, instead of the editor.
void keepOwnUndo(QWidget& field);
bool keepsOwnUndo(const QWidget& field);

/// The user's notes on a job. They are kept beside the job and can be written at any time.
class NotesSection final : public Section {
 public:
  explicit NotesSection(const EditorContext& context);

 private:
  void fill(const Launchd& launchd) override;

  GrowingText* m_textField;
};

}  // namespace mirvel::ui
