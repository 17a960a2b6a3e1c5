#pragma once

#include "ui/documents/ScriptContext.h"

namespace mirvel::ui {

/// Creates the windows of scripts, and offers them to the rest of the program.
class ScriptWindows {
 public:
  explicit ScriptWindows(const ScriptContext& context);
  ~ScriptWindows();
  ScriptWindows(const ScriptWindows&) = delete;
  ScriptWindows& operator=(const ScriptWindows&) = delete;

 private:
  const ScriptContext m_context;
};

}  // namespace mirvel::ui
