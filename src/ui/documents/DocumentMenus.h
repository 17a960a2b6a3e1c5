#pragma once

#include <string>

#include "core/documents/TextForm.h"
#include "core/scripts/SyntaxType.h"

class QMenu;

namespace mirvel {
class Localize;
class ScriptDocument;
}  // namespace mirvel

namespace mirvel::ui {

class ScriptText;
struct ScriptContext;

// The menus of what a document has: they are in the menu bar and in the status line. Each is empty before.

void fillReopenWith(QMenu& menu, ScriptDocument& document, const Localize& localize);
void fillSaveWith(QMenu& menu, ScriptDocument& document, const Localize& localize);
void fillLineEnds(QMenu& menu, ScriptDocument& document, const Localize& localize);
void fillLanguages(QMenu& menu, ScriptDocument& document, ScriptText& text);
void fillRevisions(QMenu& menu, ScriptDocument& document, const Localize& localize);
void fillRecentScripts(QMenu& menu, const ScriptContext& context);

std::string languageTitle(SyntaxType syntax, const Localize& localize);
std::string lineEndTitle(LineEnd lineEnd, const Localize& localize);

}  // namespace mirvel::ui
