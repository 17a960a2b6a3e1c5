#pragma once

#include "core/app/Program.h"
#include "core/editor/EditController.h"

namespace mirvel::testdata {

/// The edit controller of a program, with the same dependencies as in its editor.
inline EditController makeEditController(Program& program, EditStackType& stack) {
  return {program.session, program.saving, program.scanning, program.actions, stack};
}

}  // namespace mirvel::testdata
