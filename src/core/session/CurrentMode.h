#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "core/session/Mode.h"

namespace mirvel {

class Defaults;
class Selection;
struct Shell;

/// The mode in which the main window shows the catalogue, such as the list. Owns the filters. For the main thread.
class CurrentMode {
 public:
  /// All references must outlive this object.
  CurrentMode(const Shell& shell, const Defaults& defaults, Selection& selection)
      : m_shell(shell), m_defaults(defaults), m_selection(selection) {}

  /// The mode that the user has chosen; the grid if the setting is out of range.
  Mode chosen() const;
  /// The view of the chosen mode or, if that isn't registered, the first one that is. Null if none is.
  ModeType* view() const;

  /// The text for which the jobs are filtered; empty if all are shown.
  const std::string& filter() const { return m_filter; }
  /// Sets the filter and shows the jobs that match it; see `filtered`. If the selected job doesn't match, nothing is
  /// marked, but it stays selected. An empty text shows all jobs, and the details of the selected one. Does nothing,
  /// and keeps the previous filter, if no mode is registered.
  void setFilter(const Jobs& jobs, const std::string& text);
  /// Removes the text. The view changes with the next update only.
  void clearFilter() { m_filter.clear(); }

  /// Decides which jobs have problems. An empty function, as initially, finds none.
  using ProblemTest = std::function<bool(const Job& job)>;
  void setProblemTest(ProblemTest test) { m_hasProblems = std::move(test); }
  /// Whether only jobs with problems are shown, of those that match the text.
  bool showsOnlyProblems() const { return m_showsOnlyProblems; }
  /// Changes that, and shows the jobs that match; otherwise like `setFilter`.
  void setOnlyProblems(const Jobs& jobs, bool showsOnlyProblems);

  /// Shows other jobs, filtered. A selected job that doesn't have problems any more remains.
  void update(const Jobs& jobs);

  /// Selects a job and marks it in the view. It may be new, and not in the catalogue yet.
  void select(const std::shared_ptr<Job>& job) const;

 private:
  enum class Selected { Matches, Remains };
  Jobs matching(const Jobs& jobs, Selected selected) const;
  void show(ModeType& mode, const Jobs& jobs, Selected selected) const;
  /// The details don't change.
  void markSelected() const;
  void keepSelection() const;

  const Shell& m_shell;
  const Defaults& m_defaults;
  Selection& m_selection;
  std::string m_filter;
  ProblemTest m_hasProblems;
  bool m_showsOnlyProblems = false;
};

/// The jobs whose name, path or text content contains the text, ignoring case and accents, in their order.
Jobs filtered(const Jobs& jobs, const std::string& text);

}  // namespace mirvel
