#pragma once

class QPoint;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

class ScriptEditor;

/// Shows the context menu of an editor at a point of the screen, with the same commands as the Edit menu. The menu is
/// deleted when it closes, or with the editor's widget.
void popUpScriptMenu(ScriptEditor& editor, const Localize& localize, const QPoint& point);

}  // namespace mirvel::ui
