#include "core/runs/LogViewController.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/actions/ActionController.h"
#include "core/base/Const.h"
#include "core/catalogue/Job.h"
#include "core/jobfile/Plist.h"
#include "core/ports/Console.h"
#include "core/ports/Interface.h"
#include "core/ports/Workspace.h"
#include "core/runs/LogTexts.h"
#include "core/schedule/ZoneStretches.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

namespace {

/// Standard output first; a path that both have counts as that. Only absolute paths: others begin at the job's working
/// directory, or at none.
std::vector<std::string> outputPathsOf(const Job& job) {
  std::vector<std::string> paths(2);
  if (const auto* const record = job.record()) {
    paths[0] = record->standardOutPath.value_or(std::string());
    paths[1] = record->standardErrorPath.value_or(std::string());
  }
  if (paths[0] == paths[1]) paths[1].clear();
  return paths;
}

bool isRegularFile(const std::string& path) {
  std::error_code failure;
  return path.starts_with('/') && std::filesystem::is_regular_file(path, failure);
}

}  // namespace

messages::LogQuery logQuery(std::int64_t length, std::int64_t period, const std::string& label) {
  struct Unit {
    char letter;
    std::int64_t seconds;
  };
  constexpr Unit units[] = {{'m', 60}, {'h', 3600}, {'d', 86'400}};
  const auto number = length >= 0 && length < std::ssize(logLengths) ? logLengths.at(static_cast<std::size_t>(length))
                                                                     : logLengths.front();
  const Unit& unit = units[period == 0 || period == 2 ? period : 1];
  return {.lastString = std::to_string(number) + unit.letter,
          .period = std::chrono::seconds(number * unit.seconds),
          .searchString = label};
}

LogViewController::LogViewController(const SessionContext& session, ActionController& actions, const Job& job)
    : m_session(session),
      m_actions(actions),
      m_label(job.name),
      m_kind(job.originalKind),
      m_hasFile(!job.isNewFile),
      m_outputPaths(outputPathsOf(job)),
      m_dates(session.foundation.localize.timeLocale(), zoneOfThisMachine()),
      m_rows(session.foundation.localize, session.foundation.collator),
      m_delay(session.platform.mainQueue),
      m_isFollowing(session.foundation.defaults.followLog()) {}

template <typename Change>
void LogViewController::changeRows(Change change) {
  m_rowsWillChange.post();
  m_rowsChanged.post(change());
}

LogViewController::~LogViewController() {
  dropQuery();
}

std::string LogViewController::title() const {
  const Localize& localize = m_session.foundation.localize;
  const std::string log = LogTexts(localize).log();
  return m_label.empty() ? log : bidirectionalString({log, m_label}, Const::separator, localize.isRightToLeft());
}

void LogViewController::refresh(std::int64_t length, std::int64_t period) {
  dropQuery();
  empty();
  Defaults& defaults = m_session.foundation.defaults;
  (void)defaults.setLogLength(length);  // without it, the next sheet begins with the previous choice
  (void)defaults.setLogPeriod(period);
  m_period = logQuery(length, period, m_label);
  m_since = m_session.platform.clock.secondsSince1970() - static_cast<double>(m_period.period.count());
  if (!m_label.empty() && m_hasFile) send(m_period, false);
  m_stateChanged.post();
}

void LogViewController::cancel() {
  dropQuery();
  empty();
  m_stateChanged.post();
}

void LogViewController::setFollowing(bool isFollowing) {
  if (std::exchange(m_isFollowing, isFollowing) == isFollowing) return;
  (void)m_session.foundation.defaults.setFollowLog(isFollowing);
  m_pause = 0;
  if (m_isFollowing && m_isAnswered) awaitLines();
  if (!m_isFollowing && (m_isWaiting || !m_query)) dropQuery();
  m_stateChanged.post();
}

void LogViewController::send(messages::LogQuery query, bool isWaiting) {
  const auto action = Action::log(std::move(query));
  // An action doesn't own itself, and its functions are called only while it is the current one.
  const auto isCurrent = [this, current = action.get()] { return m_query.get() == current; };
  action->logReplyReceived = [this, isCurrent](const messages::LogLines& log) {
    if (isCurrent()) replied(log);
  };
  action->ended = [this, isCurrent](bool isDone) {
    if (isCurrent()) ended(isDone);
  };
  m_query = action;
  m_isWaiting = isWaiting;
  const bool isSent = m_kind.isDaemon() ? m_actions.sendPrivileged(action) : m_actions.send(action);
  if (isSent) return;
  m_session.platform.console.log("Cannot connect to helper tool to fetch log");
  if (isCurrent()) ended(false);
}

/// Doesn't change the rows.
void LogViewController::dropQuery() {
  ++m_lastWait;
  m_isWaiting = false;
  if (const auto query = std::exchange(m_query, nullptr)) m_actions.cancel(query);
}

void LogViewController::replied(const messages::LogLines& log) {
  if (!m_isWaiting) {
    m_isAnswered = true;
    m_pause = 0;
    changeRows([&] { return m_rows.assign(log); });
    return;
  }
  m_pause = log.lines.empty() ? secondsAfterNothing : secondsBetweenQueries;
  // The log was deleted meanwhile: otherwise all lines would have larger numbers than that of the query.
  if (!log.lines.empty() && log.lines.front().number <= m_rows.lastNumber()) m_rows.restartNumbers();
  // Without any line so far, the query is for all that were ever kept.
  const double since = m_rows.lastNumber() == 0 ? m_since : 0;
  changeRows([&] { return m_rows.append(log, since); });
}

void LogViewController::ended(bool isDone) {
  const bool wasWaiting = std::exchange(m_isWaiting, false);
  m_query.reset();
  if (!isDone && wasWaiting) m_isFollowing = false;  // the lines so far are still right
  if (!isDone && !wasWaiting) empty();
  if (isDone && m_isFollowing) awaitLines();
  m_stateChanged.post();
}

void LogViewController::awaitLines() {
  m_delay(m_pause, [this, wait = ++m_lastWait] {
    if (wait == m_lastWait) queryNewer();
  });
}

void LogViewController::queryNewer() {
  messages::LogQuery query = m_period;
  query.after = m_rows.lastNumber();
  send(std::move(query), true);
}

void LogViewController::empty() {
  m_isAnswered = false;
  changeRows([this] { return m_rows.clear(); });
}

void LogViewController::setFilter(const std::string& text) {
  changeRows([&] { return m_rows.setFilter(text); });
  m_stateChanged.post();
}

void LogViewController::setOrder(std::optional<LogOrder> order) {
  changeRows([&] { return m_rows.setOrder(order); });
}

std::string LogViewController::status() const {
  const LogTexts texts(m_session.foundation.localize);
  if (isRunning()) return {};
  const std::int64_t all = m_rows.lineCount(), dropped = m_rows.droppedCount(), evicted = m_rows.evictedCount();
  if (all == 0 && dropped == 0) return m_isAnswered ? texts.nothingWasLogged() : std::string();
  if (m_rows.size() == 0) return texts.nothingMatches();
  std::string lines = m_rows.filter().empty() ? texts.lines(all) : texts.linesOf(m_rows.shownLineCount(), all);
  if (dropped > 0) lines += " \u2013 " + texts.linesWereDropped(dropped);
  if (evicted > 0) lines += " \u2013 " + texts.earlierLinesArentShown(evicted);
  return lines;
}

std::string LogViewController::copiedText(const std::vector<std::size_t>& rows) const {
  std::string text;
  for (const std::size_t index : rows) {
    const LogRow& row = m_rows.at(index);
    if (!text.empty()) text += '\n';
    text.append(date(row)).append(Const::separator).append(row.message);
  }
  return text;
}

std::vector<LogViewController::OutputFile> LogViewController::outputFiles() const {
  const LogTexts texts(m_session.foundation.localize);
  std::vector<OutputFile> files;
  for (std::size_t i = 0; i < m_outputPaths.size(); ++i) {
    if (!isRegularFile(m_outputPaths[i])) continue;
    files.push_back(
        {.title = i == 0 ? texts.openOutputFile() : texts.openErrorFile(), .url = URL::file(m_outputPaths[i])});
  }
  return files;
}

void LogViewController::open(const OutputFile& file) {
  if (m_session.platform.workspace.open(file.url)) return;
  const Localize& localize = m_session.foundation.localize;
  m_session.platform.interface.error(LogTexts(localize).theFileCantBeOpened(file.url.text()),
                                     localize.pleaseTryAgain());
}

}  // namespace mirvel
