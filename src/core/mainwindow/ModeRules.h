#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/catalogue/Job.h"

namespace mirvel {

class Selection;
struct Shell;
struct WindowContext;

/// Prevents the selection of a mode from changing while there are unsaved changes or a save is in progress.
class SelectionGuard {
 public:
  /// `context` must outlive the guard.
  explicit SelectionGuard(const WindowContext& context) : m_context(context) {}

  /// Whether the selection may change now. If unsaved changes prevent it, the user is asked about them in a sheet,
  /// once: further attempts are refused silently until a call finds no unsaved changes.
  bool mayChange();

 private:
  const WindowContext& m_context;
  bool m_isWarningAboutUnsaved = false;
};

/// The text that an empty view shows: "Loading…" during a scan, otherwise that there are no items. None if there are
/// jobs, even if the filter hides all of them.
std::optional<std::string> emptyStateLabel(const WindowContext& context);

/// The mark on the icon of a job whose last run has failed, with a description; none for other jobs.
std::optional<Image> failureMark(const WindowContext& context, const Job& job);
/// What is known of the runs of a job, one sentence a line; empty if nothing is.
std::string runsToolTip(const WindowContext& context, const Job& job);

/// The file to drag for a job. None for jobs of other kinds than launchd's, which can't be dragged.
std::optional<URL> draggedURL(const Job& job);

/// Selects the job of the catalogue at the URL. Returns false, without effect, if there is none or if there are unsaved
/// changes.
bool selectInCatalogue(const WindowContext& context, const URL& url);

/// The job that commands apply to: the selected one while its details are shown. Null if there is none, and while a
/// filter hides it, since then its details are cleared.
std::shared_ptr<Job> shownJob(const Selection& selection, const Shell& shell);

}  // namespace mirvel
