#pragma once

#include "ui/scripts/ScriptText.h"
#include "ui/scripts/scintilla/ScintillaEditor.h"

namespace mirvel::ui {

/// A script in the module's editor, with access to the editor's internals.
class ScintillaText {
 public:
  ScintillaText()
      : text([this](QWidget& parent) -> ScriptEditor& { return *(m_editor = new ScintillaEditor(&parent)); },
             m_localize, QStringLiteral("Script")) {}

  ScintillaEditor& editor() { return *m_editor; }

 private:
  ScintillaEditor* m_editor = nullptr;
  const Localize m_localize{"en"};

 public:
  ScriptText text;
};

}  // namespace mirvel::ui
