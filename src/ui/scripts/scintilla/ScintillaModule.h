#pragma once

#include <QObject>

#include "ui/scripts/ScriptEditorFactory.h"

namespace mirvel::ui {

/// What is outside of the module to see.
class ScintillaModule final : public QObject, public ScriptEditorFactory {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID SCRIPT_EDITOR_FACTORY_ID FILE "ScintillaModule.json")
  Q_INTERFACES(mirvel::ui::ScriptEditorFactory)
 public:
  ScriptEditor& make(QWidget& parent) override;
};

}  // namespace mirvel::ui
