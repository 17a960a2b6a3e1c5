#pragma once

#include "core/app/Program.h"
#include "core/editor/EditController.h"

namespace mirvel::testdata {

/// The edit controller of a program, with the same dependencies as in its editor.
inline EditController makeEditController(Program& program, EditStackType& stack) {
  return {program.foundation, program.platform, program.shell,   program.saving,  program.scanning,
          program.selection,  program.editing,  program.actions, program.fetcher, stack};
}

}  // namespace mirvel::testdata
