#pragma once

#include <Qsci/qscilexer.h>

#include <memory>

#include "core/scripts/SyntaxType.h"

namespace mirvel::ui {

/// Creates the lexer for a language; null for plain text and for languages without one.
std::unique_ptr<QsciLexer> makeScriptLexer(SyntaxType type);

}  // namespace mirvel::ui
