#pragma once

#include "core/scripts/SyntaxType.h"
#include "ui/scripts/ScriptLook.h"

namespace mirvel::ui {

/// What a style number of the lexer for a language stands for. The numbers are those of QScintilla's lexer classes.
ScriptRole roleOfStyle(SyntaxType type, int style);

}  // namespace mirvel::ui
