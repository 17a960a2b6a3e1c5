#include "core/runs/FailedOutput.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "core/actions/ActionController.h"
#include "core/catalogue/Job.h"
#include "core/messages/Replies.h"
#include "core/ports/Clock.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

// Output may be read from its pipe just after the process has ended, in seconds.
constexpr double delayOfOutput = 2;

/// Whether the three bytes are a character that changes the direction of the text around it.
bool isDirectionMark(std::string_view bytes) {
  const std::string_view marks[] = {"\u200E", "\u200F", "\u202A", "\u202B", "\u202C", "\u202D",
                                    "\u202E", "\u2066", "\u2067", "\u2068", "\u2069"};
  return std::find(std::begin(marks), std::end(marks), bytes) != std::end(marks);
}

/// The beginning of a line, without characters that could make it look like something else.
std::string shownLine(std::string_view line, std::size_t longest) {
  std::string result;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const auto byte = static_cast<unsigned char>(line[i]);
    constexpr unsigned char firstPrintable = 0x20, deletion = 0x7F;
    const bool isControl = (byte < firstPrintable && byte != '\t') || byte == deletion;
    if (isDirectionMark(line.substr(i, 3))) {
      i += 2;
    } else if (!isControl) {
      result += line[i];
    }
  }
  return std::string(String::firstCharacters(result, longest));
}

bool isOutputOf(const messages::LogLine& line, const RunReport& run) {
  const double end = run.endTime.value_or(run.start) + delayOfOutput;
  return line.kind == messages::LogLine::Kind::Output && line.seconds >= run.start && line.seconds <= end;
}

}  // namespace

FailedOutput::FailedOutput(ActionController& actions, const Clock& clock) : m_actions(actions), m_clock(clock) {}

FailedOutput::~FailedOutput() {
  clear();
}

void FailedOutput::fetch(const Job& job, const RunReport& run) {
  if (m_label == job.name && m_start == run.start) return;
  clear();
  m_label = job.name;
  m_start = run.start;
  const double age = m_clock.secondsSince1970() - run.start;
  if (run.start <= 0 || age > longestAge) return;
  const auto period = std::chrono::seconds(static_cast<std::int64_t>(std::max(0.0, std::ceil(age))) + 1);
  m_query = Action::log({.period = period, .searchString = job.name});
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
    text += shownLine(lines[i]->message, longestLine);
  }
  if (text == m_text) return;
  m_text = std::move(text);
  m_changed.post();
}

void FailedOutput::clear() {
  m_label.clear();
  m_start = 0;
  m_text.clear();
  if (!m_query) return;
  const auto query = std::exchange(m_query, nullptr);
  query->logReplyReceived = {};
  query->ended = {};
  m_actions.cancel(query);
}

}  // namespace mirvel
