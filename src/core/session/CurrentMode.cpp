#include "core/session/CurrentMode.h"

#include <algorithm>
#include <iterator>
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

void CurrentMode::setOnlyProblems(const Jobs& jobs, bool showsOnlyProblems) {
  ModeType* const mode = view();
  if (!mode || std::exchange(m_showsOnlyProblems, showsOnlyProblems) == showsOnlyProblems) return;
  show(*mode, jobs, Selected::Matches);
}

Jobs CurrentMode::matching(const Jobs& jobs, Selected selected) const {
  Jobs result = m_filter.empty() ? jobs : filtered(jobs, m_filter);
  if (!m_showsOnlyProblems) return result;
  const auto shown = selected == Selected::Remains ? m_selection.job() : nullptr;
  std::erase_if(result, [&](const auto& job) {
    const bool remains = shown && job->url.equalTo(shown->url);
    return !remains && !(m_hasProblems && m_hasProblems(*job));
  });
  return result;
}

void CurrentMode::show(ModeType& mode, const Jobs& jobs, Selected selected) const {
  if (m_filter.empty() && !m_showsOnlyProblems) {
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
  if (!m_filter.empty() || m_showsOnlyProblems) return show(*mode, jobs, Selected::Remains);
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
