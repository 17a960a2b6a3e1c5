#pragma once

#include <QtPlugin>

class QWidget;

namespace mirvel::ui {

class ScriptEditor;

/// What a module with a script editor offers. The module links none of the program's own libraries: it has what these
/// headers declare, and is told the rest.
class ScriptEditorFactory {
 public:
  ScriptEditorFactory() = default;
  virtual ~ScriptEditorFactory() = default;
  ScriptEditorFactory(const ScriptEditorFactory&) = delete;
  ScriptEditorFactory& operator=(const ScriptEditorFactory&) = delete;

  /// Makes an editor as a child of a widget.
  virtual ScriptEditor& make(QWidget& parent) = 0;
};

}  // namespace mirvel::ui

#define SCRIPT_EDITOR_FACTORY_ID "app.mirvel.ScriptEditorFactory"
Q_DECLARE_INTERFACE(mirvel::ui::ScriptEditorFactory, SCRIPT_EDITOR_FACTORY_ID)
