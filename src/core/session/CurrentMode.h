#pragma once

#include <memory>
#include <string>

#include "core/session/Mode.h"

namespace mirvel {

class Defaults;
class Selection;
struct Shell;

/// The mode in which the main window shows the catalogue. Owns the filter. For the main thread.
class CurrentMode {
 public:
  /// All outlive it.
  CurrentMode(const Shell& shell, const Defaults& defaults, Selection& selection)
      : m_shell(shell), m_defaults(defaults), m_selection(selection) {}

  /// The mode that the user chose; grid mode if the setting is out of range.
  Mode chosen() const;
  /// The chosen mode or, if it isn't registered, the first one that is. Null if none is.
  ModeType* view() const;

  /// Empty: all jobs are shown.
  const std::string& filter() const { return m_filter; }
  /// Shows those of the jobs that contain the text, ignoring case and accents: in their text content, name or path.
  /// An empty text shows all jobs, and the details of the selected one. Does nothing without a mode.
  void setFilter(const Jobs& jobs, const std::string& text);
  /// Drops the filter; what is shown stays until the next update.
  void clearFilter() { m_filter.clear(); }
  /// Shows other jobs, through the filter.
  void update(const Jobs& jobs);

  /// Marks the selected job, and leaves the details as they are.
  void markSelected() const;
  /// Selects a job, which needn't be in the catalogue yet, and marks it.
  void select(const std::shared_ptr<Job>& job) const;

 private:
  void keepSelection() const;

  const Shell& m_shell;
  const Defaults& m_defaults;
  Selection& m_selection;
  std::string m_filter;
};

/// The jobs that contain the text, in their order.
Jobs filtered(const Jobs& jobs, const std::string& text);

}  // namespace mirvel
