#include "core/session/CurrentMode.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/settings/Defaults.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

bool isAmong(const Jobs& jobs, const std::shared_ptr<Job>& selected) {
  return selected &&
         std::any_of(jobs.begin(), jobs.end(), [&](const auto& job) { return job->url.equalTo(selected->url); });
}

}  // namespace

Mode CurrentMode::chosen() const {
  const auto stored = m_defaults.selectedMode();
  return stored >= 0 && stored < 4 ? static_cast<Mode>(stored) : Mode::Grid;
}

ModeType* CurrentMode::view() const {
  const auto& modes = m_shell.modes;
  if (ModeType* const view = modes.at(static_cast<std::size_t>(chosen()))) return view;
  const auto* first = std::find_if(modes.begin(), modes.end(), [](const ModeType* mode) { return mode; });
  return first == modes.end() ? nullptr : *first;
}

void CurrentMode::setFilter(const Jobs& jobs, const std::string& text) {
  ModeType* const mode = view();
  if (!mode) return;
  m_filter = text;
  show(*mode, jobs, Selected::Matches);
}

void CurrentMode::setSubset(const Jobs& jobs, std::optional<JobSubset> subset) {
  ModeType* const mode = view();
  if (!mode || std::exchange(m_subset, subset) == subset) return;
  show(*mode, jobs, Selected::Matches);
}

void CurrentMode::addFilterWord(const std::string& word, JobSubset subset) {
  m_words.emplace_back(String::fold(word), subset);
}

bool CurrentMode::dependsOn(JobSubset subset) const {
  if (m_subset == subset) return true;
  const auto worded = wordedFilter();
  return worded && worded->subset == subset;
}

bool CurrentMode::belongsTo(JobSubset subset, const Job& job) const {
  const SubsetTest& test = m_tests.at(static_cast<std::size_t>(subset));
  return test && test(job);
}

std::optional<CurrentMode::WordedFilter> CurrentMode::wordedFilter() const {
  const std::string folded = String::fold(m_filter);
  const std::string_view text = String::trim(folded);
  for (const auto& [word, subset] : m_words) {
    if (text == word) return WordedFilter{subset, {}};
    if (text.starts_with(word + ' ')) return WordedFilter{subset, std::string(String::trim(text.substr(word.size())))};
    if (text.ends_with(' ' + word)) {
      return WordedFilter{subset, std::string(String::trim(text.substr(0, text.size() - word.size())))};
    }
  }
  return std::nullopt;
}

Jobs CurrentMode::matchingText(const Jobs& jobs) const {
  if (m_filter.empty()) return jobs;
  const auto worded = wordedFilter();
  if (!worded) return filtered(jobs, m_filter);
  const std::string folded = String::fold(m_filter);
  Jobs result;
  std::copy_if(jobs.begin(), jobs.end(), std::back_inserter(result), [&](const auto& job) {
    return job->contains(folded) || (belongsTo(worded->subset, *job) && job->contains(worded->rest));
  });
  return result;
}

Jobs CurrentMode::matching(const Jobs& jobs, Selected selected) const {
  Jobs result = matchingText(jobs);
  if (!m_subset) return result;
  const auto shown = selected == Selected::Remains ? m_selection.job() : nullptr;
  std::erase_if(result, [&](const auto& job) {
    const bool remains = shown && job->url.equalTo(shown->url);
    return !remains && !belongsTo(*m_subset, *job);
  });
  return result;
}

bool CurrentMode::isFilteredOut(const std::shared_ptr<Job>& job) const {
  return matching({job}, Selected::Matches).empty();
}

void CurrentMode::show(ModeType& mode, const Jobs& jobs, Selected selected) const {
  if (!isLimited()) {
    mode.update(jobs);
    markSelected();
    if (m_selection.job() && m_shell.detail) m_shell.detail->updateDetail();
    return;
  }
  const Jobs left = matching(jobs, selected);
  mode.update(left);
  if (isAmong(left, m_selection.job())) {
    keepSelection();
  } else {
    mode.deselect();
  }
}

void CurrentMode::keepSelection() const {
  markSelected();
  DetailType* const detail = m_shell.detail;
  if (detail && detail->detailTab() == DetailTab::NoSelection) detail->updateDetail();
}

void CurrentMode::update(const Jobs& jobs) {
  ModeType* const mode = view();
  if (!mode) return;
  if (isLimited()) return show(*mode, jobs, Selected::Remains);
  mode->update(jobs);
}

void CurrentMode::markSelected() const {
  const auto job = m_selection.job();
  ModeType* const mode = view();
  if (!job || !mode) return;
  if (job->isNewFile) {
    mode->select(job->url);
  } else {
    mode->select(job);
  }
}

void CurrentMode::select(const std::shared_ptr<Job>& job) const {
  ModeType* const mode = view();
  if (mode) mode->deselect();
  m_selection.select(job);
  if (mode) mode->select(job);
}

Jobs filtered(const Jobs& jobs, const std::string& text) {
  const std::string folded = String::fold(text);
  Jobs result;
  std::copy_if(jobs.begin(), jobs.end(), std::back_inserter(result),
               [&](const auto& job) { return job->contains(folded); });
  return result;
}

}  // namespace mirvel
