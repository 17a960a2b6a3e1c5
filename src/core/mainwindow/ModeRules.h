#pragma once

#include <optional>
#include <string>

#include "core/catalogue/Job.h"

namespace mirvel {

class Program;

/// The guard on unsaved changes that each mode has for its selection.
class SelectionGuard {
 public:
  explicit SelectionGuard(Program& program) : m_program(program) {}

  /// Whether the selection may change now. If unsaved changes stand against it the user is asked, once until these are
  /// gone.
  bool mayChange();

 private:
  Program& m_program;
  bool m_isWarningAboutUnsaved = false;
};

/// What a view without entries shows behind them; none: nothing. A filter that matches nothing shows nothing.
std::optional<std::string> emptyStateLabel(const Program& program);

/// What is dragged out of a view with a job: its file; none if jobs of its kind can't be dragged.
std::optional<URL> draggedURL(const Job& job);

}  // namespace mirvel
