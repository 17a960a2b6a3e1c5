#pragma once

#include <filesystem>

#include "core/base/Result.h"
#include "ui/scripts/ScriptText.h"

namespace mirvel {
class Console;
class Localize;
}  // namespace mirvel

namespace mirvel::ui {

class ScriptEditorFactory;

/// The path of the editor module, in the folder of the helper programs.
std::filesystem::path scriptModule();

/// Loads the module unless it is loaded already, and returns its factory, which lives until the program ends. Fails if
/// the file is missing or damaged, isn't a module of this program, or was built for another version.
Result<ScriptEditorFactory*> loadScriptModule(const std::filesystem::path& module);

/// Creates a widget for a script. The first call loads the module, which takes some milliseconds. If that fails, the
/// reason is logged to the console and the widget shows neither colours nor line numbers. `name` is the accessible
/// name. `localize` must outlive the widget.
ScriptText* makeScriptText(Console& console, const Localize& localize, const QString& name, QWidget* parent = nullptr,
                           const std::filesystem::path& module = scriptModule());

}  // namespace mirvel::ui
