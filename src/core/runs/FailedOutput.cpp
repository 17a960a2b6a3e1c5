#include "core/runs/FailedOutput.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "core/actions/ActionController.h"
#include "core/catalogue/Job.h"
#include "core/messages/Replies.h"
#include "core/ports/Clock.h"
#include "core/runs/VisibleText.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

// Output may be read from its pipe just after the process has ended, in seconds.
constexpr double delayOfOutput = 2;

/// The beginning of a line. It is cut off first as well, since what becomes visible can take ten times the space.
std::string shownLine(std::string_view line) {
  const std::string visible = visibleText(String::firstCharacters(line, FailedOutput::longestLine));
  return std::string(String::firstCharacters(visible, FailedOutput::longestLine));
}

bool isOutputOf(const messages::LogLine& line, const RunReport& run) {
  const double end = run.endTime.value_or(run.start) + delayOfOutput;
  return line.kind == messages::LogLine::Kind::Output && line.seconds >= run.start && line.seconds <= end;
}

}  // namespace

FailedOutput::FailedOutput(ActionController& actions, const Clock& clock, MainQueue& queue)
    : m_actions(actions), m_clock(clock), m_delay(queue) {}

FailedOutput::~FailedOutput() {
  clear();
}

void FailedOutput::fetch(const Job& job, const RunReport& run) {
  if (m_label == job.name && m_start == run.start) return;
  clear();
  m_label = job.name;
  m_start = run.start;
  const double now = m_clock.secondsSince1970();
  if (run.start <= 0 || now - run.start > longestAge) return;
  const double wait = run.endTime.value_or(run.start) + delayOfOutput - now;
  if (wait > 0 && wait <= delayOfOutput) {
    m_delay(wait, [this, run, number = m_fetches] {
      if (number == m_fetches) ask(run);
    });
  }
  ask(run);
}

void FailedOutput::ask(const RunReport& run) {
  cancel();
  const double age = m_clock.secondsSince1970() - run.start;
  const auto period = std::chrono::seconds(static_cast<std::int64_t>(std::max(0.0, std::ceil(age))) + 1);
  m_query = Action::log({.period = period, .searchString = m_label});
  m_query->presentError = false;
  m_query->cleanUp = false;
  m_query->logReplyReceived = [this, run](const messages::LogLines& log) { answered(log, run); };
  m_query->ended = [this](bool) { m_query.reset(); };
  if (!m_actions.send(m_query)) m_query.reset();
}

void FailedOutput::answered(const messages::LogLines& log, const RunReport& run) {
  std::vector<const messages::LogLine*> lines;
  for (const messages::LogLine& line : log.lines) {
    if (isOutputOf(line, run)) lines.push_back(&line);
  }
  const std::size_t first = lines.size() - std::min(lines.size(), mostLines);
  std::string text;
  for (std::size_t i = first; i < lines.size(); ++i) {
    if (!text.empty()) text += '\n';
    text += shownLine(lines[i]->message);
  }
  if (text == m_text) return;
  m_text = std::move(text);
  m_changed.post();
}

void FailedOutput::clear() {
  m_label.clear();
  m_start = 0;
  m_text.clear();
  ++m_fetches;
  cancel();
}

void FailedOutput::cancel() {
  if (!m_query) return;
  const auto query = std::exchange(m_query, nullptr);
  query->logReplyReceived = {};
  query->ended = {};
  m_actions.cancel(query);
}

}  // namespace mirvel
