#pragma once

#include <filesystem>

#include "core/base/Result.h"
#include "ui/scripts/ScriptText.h"

namespace mirvel {
class Program;
}

namespace mirvel::ui {

class ScriptEditorFactory;

/// Where the module with the editor of scripts is: beside the helper programs.
std::filesystem::path scriptModule();

/// Loads the module, if it isn't yet, and asks it for what it offers, which stays until the program ends. The error
/// says why there is none: the file is missing or damaged, another program's, or was made for another version.
Result<ScriptEditorFactory*> loadScriptModule(const std::filesystem::path& module);

/// Makes a widget for a script. The first one takes some milliseconds, to load the module. Without one a plain widget
/// serves, without colours and line numbers, and the log tells why. `name` tells what the text is to those who can't
/// see it. The program outlives the widget.
ScriptText* makeScriptText(Program& program, const QString& name, QWidget* parent = nullptr,
                           const std::filesystem::path& module = scriptModule());

}  // namespace mirvel::ui
