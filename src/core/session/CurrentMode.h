#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/session/Mode.h"

namespace mirvel {

class Defaults;
class Selection;
struct Shell;

/// Parts of the catalogue to which the view can be limited.
enum class JobSubset : std::uint8_t { WithProblems, Failed, Running };

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

  /// Decides which jobs belong to a subset. An empty function, as initially, finds none.
  using SubsetTest = std::function<bool(const Job& job)>;
  void setTest(JobSubset subset, SubsetTest test) { m_tests.at(static_cast<std::size_t>(subset)) = std::move(test); }
  /// The subset of which only jobs are shown, of those that match the text; none if all are.
  const std::optional<JobSubset>& subset() const { return m_subset; }
  /// Changes that, and shows the jobs that match; otherwise like `setFilter`.
  void setSubset(const Jobs& jobs, std::optional<JobSubset> subset);

  /// Defines a word that finds the jobs of a subset, in addition to those that contain it: alone, or before or after
  /// another text. Case and accents don't matter. A subset can have several words.
  void addFilterWord(const std::string& word, JobSubset subset);
  /// Whether the shown jobs depend on a subset.
  bool dependsOn(JobSubset subset) const;

  /// Whether a job isn't shown because of the text or the subset.
  bool isFilteredOut(const std::shared_ptr<Job>& job) const;

  /// Shows other jobs, filtered. A selected job that doesn't belong to the subset any more remains.
  void update(const Jobs& jobs);

  /// Selects a job and marks it in the view. It may be new, and not in the catalogue yet.
  void select(const std::shared_ptr<Job>& job) const;

 private:
  enum class Selected { Matches, Remains };
  /// A filter text with a word for a subset.
  struct WordedFilter {
    JobSubset subset;
    std::string rest;  ///< folded; without the word
  };

  bool belongsTo(JobSubset subset, const Job& job) const;
  std::optional<WordedFilter> wordedFilter() const;
  bool isLimited() const { return !m_filter.empty() || m_subset; }
  Jobs matchingText(const Jobs& jobs) const;
  Jobs matching(const Jobs& jobs, Selected selected) const;
  void show(ModeType& mode, const Jobs& jobs, Selected selected) const;
  /// The details don't change.
  void markSelected() const;
  void keepSelection() const;

  const Shell& m_shell;
  const Defaults& m_defaults;
  Selection& m_selection;
  std::string m_filter;
  std::array<SubsetTest, 3> m_tests;                       ///< by the value of `JobSubset`
  std::vector<std::pair<std::string, JobSubset>> m_words;  ///< folded
  std::optional<JobSubset> m_subset;
};

/// The jobs whose name, path or text content contains the text, ignoring case and accents, in their order.
Jobs filtered(const Jobs& jobs, const std::string& text);

}  // namespace mirvel
