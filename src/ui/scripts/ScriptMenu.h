#pragma once

class QPoint;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

class ScriptEditor;

/// Shows the commands on the text of an editor, as the Edit menu has them, at a point of the screen. The menu goes with
/// the editor's widget, or when it is closed.
void popUpScriptMenu(ScriptEditor& editor, const Localize& localize, const QPoint& point);

}  // namespace mirvel::ui
