#pragma once

#include "core/scripts/SyntaxType.h"
#include "ui/scripts/ScriptLook.h"

namespace mirvel::ui {

/// The role of a style number in the lexer for a language. The numbers are defined by QScintilla's lexer classes.
ScriptRole roleOfStyle(SyntaxType type, int style);

}  // namespace mirvel::ui
