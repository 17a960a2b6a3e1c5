#include "ui/scripts/scintilla/ScintillaModule.h"

#include "ui/scripts/scintilla/ScintillaEditor.h"

namespace mirvel::ui {

ScriptEditor& ScintillaModule::make(QWidget& parent) {
  return *new ScintillaEditor(&parent);
}

}  // namespace mirvel::ui
