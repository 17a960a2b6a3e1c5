#pragma once

#include "ui/editor/Section.h"

class QPlainTextEdit;

namespace mirvel::ui {

/// What the user noted about a job. It is kept beside the job, and can be written at any time.
class NotesSection final : public Section {
 public:
  explicit NotesSection(Program& program);

 private:
  void fill(const Launchd& launchd) override;

  QPlainTextEdit* m_textField;
  bool m_isFilling = false;
};

}  // namespace mirvel::ui
