#pragma once

#include <QToolButton>

#include "core/session/Platform.h"

namespace mirvel {
class CommandRepairs;
class Localize;
struct Shell;
}  // namespace mirvel

namespace mirvel::ui {

class RunTextField;

/// The menu button beside a field with a command: chooses a file, tests the command, and reveals or edits the file that
/// it names. Changes the field only by inserting commands.
class RunMenuButton final : public QToolButton {
 public:
  /// All outlive it.
  RunMenuButton(const Platform& platform, const Shell& shell, const CommandRepairs& repairs, const Localize& localize,
                RunTextField& field);

 private:
  void fill();
  void choose();

  const Platform& m_platform;
  const Shell& m_shell;
  const CommandRepairs& m_repairs;
  const Localize& m_localize;
  RunTextField& m_field;
  QMenu* m_menu;
};

}  // namespace mirvel::ui
