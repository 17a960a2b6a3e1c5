#pragma once

#include "core/propertylist/Value.h"

namespace mirvel {

class Program;

/// Puts a job of this content in place of the selected one, with its URL and kind, as an unsaved change: in the
/// catalogue, in the mode and in the details. False, after the user was told, if there is no selected job or the
/// content is no job's.
bool replaceSelected(Program& program, const propertylist::Dictionary& dictionary);

}  // namespace mirvel
