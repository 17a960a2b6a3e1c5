#include "ui/documents/ScriptWindows.h"

#include "core/documents/ScriptDocuments.h"
#include "core/session/Shell.h"
#include "ui/documents/ScriptWindowController.h"
#include "ui/support/Controls.h"

namespace mirvel::ui {

ScriptWindows::ScriptWindows(const ScriptContext& context) : m_context(context) {
  m_context.documents.setMakeView(
      [this](ScriptDocument& document) { return std::make_unique<ScriptWindowController>(m_context, document); });
  m_context.shell.editScript = [this](const URL& script) { m_context.documents.open(script); };
  m_context.shell.chooseScript = [this] { m_context.documents.chooseAndOpen(optionHeld()); };
}

ScriptWindows::~ScriptWindows() {
  m_context.documents.closeAll(true);
  m_context.documents.setMakeView({});
  m_context.shell.editScript = nullptr;
  m_context.shell.chooseScript = nullptr;
}

}  // namespace mirvel::ui
