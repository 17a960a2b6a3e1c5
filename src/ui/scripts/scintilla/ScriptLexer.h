#pragma once

#include <Qsci/qscilexer.h>

#include <memory>

#include "core/scripts/SyntaxType.h"

namespace mirvel::ui {

/// What tells the words, strings and comments of a language apart; null for plain text and languages
/// without one.
std::unique_ptr<QsciLexer> makeScriptLexer(SyntaxType type);

}  // namespace mirvel::ui
