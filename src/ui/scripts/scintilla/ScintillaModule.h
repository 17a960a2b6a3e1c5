#pragma once

#include <QObject>

#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/scintilla/ScintillaEditor.h"

namespace mirvel::ui {

/// The entry point of the plugin. Only moc's output is compiled: it is the whole module besides the editor.
class ScintillaModule final : public QObject, public ScriptEditorFactory {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID SCRIPT_EDITOR_FACTORY_ID FILE "ScintillaModule.json")
  Q_INTERFACES(mirvel::ui::ScriptEditorFactory)
 public:
  ScriptEditor& make(QWidget& parent) override { return *new ScintillaEditor(&parent); }
};

}  // namespace mirvel::ui
