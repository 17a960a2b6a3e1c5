#include <QObject>

#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/scintilla/ScintillaEditor.h"

namespace mirvel::ui {

/// The plugin's entry point.
class ScintillaModule final : public QObject, public ScriptEditorFactory {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID SCRIPT_EDITOR_FACTORY_ID FILE "ScintillaModule.json")
  Q_INTERFACES(mirvel::ui::ScriptEditorFactory)
 public:
  ScriptEditor& make(QWidget& parent) override { return *new ScintillaEditor(&parent); }
};

}  // namespace mirvel::ui

#include "ScintillaModule.moc"
