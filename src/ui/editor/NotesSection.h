#pragma once

#include "ui/editor/Section.h"

namespace mirvel::ui {

class GrowingText;

/// What the user noted about a job. It is kept beside the job, and can be written at any time.
class NotesSection final : public Section {
 public:
  explicit NotesSection(Program& program);

 private:
  void fill(const Launchd& launchd) override;

  GrowingText* m_textField;
};

}  // namespace mirvel::ui
