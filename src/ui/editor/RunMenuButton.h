#pragma once

#include <QToolButton>

#include "core/app/Program.h"

namespace mirvel::ui {

class RunTextField;

/// The button beside a field with a command, with what can be done about it: to choose a file, to test it, and to see
/// or edit the file that it names. Does nothing to the field but to put commands into it.
class RunMenuButton final : public QToolButton {
 public:
  RunMenuButton(Program& program, RunTextField& field, QWidget* parent = nullptr);

 private:
  void fill();
  void choose();

  Program& m_program;
  RunTextField& m_field;
  QMenu* m_menu;
};

}  // namespace mirvel::ui
