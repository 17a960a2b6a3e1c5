#pragma once

#include <QWidget>

#include "core/creation/RunChoosers.h"
#include "core/locale/Localize.h"

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

class RunTextField;

/// The field with the command that a new job runs.
class NewRunCommandViewController final : public QWidget {
 public:
  NewRunCommandViewController(Program& program, NewRunCommand& chooser);

  void redraw();

 private:
  const Localize& m_localize;
  NewRunCommand& m_chooser;
  RunTextField* m_runTextField;
};

}  // namespace mirvel::ui
