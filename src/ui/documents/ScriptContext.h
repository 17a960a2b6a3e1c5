#pragma once

#include "core/session/SessionContext.h"

namespace mirvel {
class CommandRepairs;
class JobControl;
class JobRuns;
class ScriptDocuments;
}  // namespace mirvel

namespace mirvel::ui {

/// The parts of the program that the windows of scripts use. The record and everything it refers to must outlive its
/// users, which keep a reference to it.
struct ScriptContext : SessionContext {
  ScriptDocuments& documents;
  JobControl& control;
  JobRuns& runs;
  const CommandRepairs& repairs;
};

}  // namespace mirvel::ui
