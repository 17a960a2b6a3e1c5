#pragma once

#include <Qsci/qsciscintillabase.h>

#include <string_view>

#include "ui/scripts/ScriptEditor.h"

namespace mirvel::ui {

/// The searching methods of `ScriptEditor` for a Scintilla widget.
bool findIn(QsciScintillaBase& text, const TextSearch& search, bool isBackwards);
bool replaceIn(QsciScintillaBase& text, const TextSearch& search, std::string_view replacement);
int replaceAllIn(QsciScintillaBase& text, const TextSearch& search, std::string_view replacement);

}  // namespace mirvel::ui
