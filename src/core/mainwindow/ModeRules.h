#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/catalogue/Job.h"

namespace mirvel {

class Selection;
struct Shell;
struct WindowContext;

/// Keeps a mode's selection from changing while there are unsaved changes or a save is under way.
class SelectionGuard {
 public:
  explicit SelectionGuard(const WindowContext& context) : m_context(context) {}

  /// Whether the selection may change now. If unsaved changes forbid it the user is asked about them, but not again
  /// until they are gone.
  bool mayChange();

 private:
  const WindowContext& m_context;
  bool m_isWarningAboutUnsaved = false;
};

/// The text that a view without entries shows. None if there are jobs, even if a filter hides them all.
std::optional<std::string> emptyStateLabel(const WindowContext& context);

/// The file that is dragged out of a view with a job. None if jobs of its kind can't be dragged.
std::optional<URL> draggedURL(const Job& job);

/// Selects the catalogue's job at the URL. False, without effect, if there is none or there are unsaved changes.
bool selectInCatalogue(const WindowContext& context, const URL& url);

/// The job that commands apply to: the selected one, as long as its details are shown; a filter may hide it. Null if
/// there is none.
std::shared_ptr<Job> shownJob(const Selection& selection, const Shell& shell);

/// Whether the jobs are equal one by one and have the same URLs: copies of one file are equal jobs, but different rows.
bool haveSameRows(const Jobs& a, const Jobs& b);

}  // namespace mirvel
