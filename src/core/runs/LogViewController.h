#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/actions/Action.h"
#include "core/base/Signal.h"
#include "core/catalogue/Kind.h"
#include "core/ports/MainQueue.h"
#include "core/runs/LogDates.h"
#include "core/runs/LogRows.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class ActionController;
class Job;

/// The numbers that the sheet offers for the length of the period.
inline constexpr std::array<std::int64_t, 5> logLengths{1, 4, 8, 16, 30};

/// The units of the period, by their index in the sheet.
enum class LogPeriod { Minutes, Hours, Days };

/// The period for two indexes. An index out of range counts as the length 1, or as hours.
///
///     logQuery(1, 1, "a") → {.lastString = "4h", .period = 14'400 s, .searchString = "a"}
messages::LogQuery logQuery(std::int64_t length, std::int64_t period, const std::string& label);

/// The rules of the log sheet: queries the log of one job and keeps the lines. A job that the user's host runs is asked
/// for at the helper that acts as the user; only daemons need the other one, and the password. For the main thread.
///
/// At any time there is at most one query. Its outcome ends it; that of an earlier query has no effect. With `follow`,
/// an answered query is followed by queries for newer lines.
class LogViewController {
 public:
  /// Between an answer and the query for newer lines, so that a job that prints a lot doesn't occupy the program.
  static constexpr double secondsBetweenQueries = 0.3;
  /// Likewise if the answer had no lines.
  static constexpr double secondsAfterNothing = 1;

  /// All must outlive this object. The job is kept as it is now: with the label and in the folder from which it was
  /// loaded, whatever is being edited.
  LogViewController(const SessionContext& session, ActionController& actions, const Job& job);
  /// Cancels the query.
  ~LogViewController();
  LogViewController(const LogViewController&) = delete;
  LogViewController& operator=(const LogViewController&) = delete;

  /// "Log – org.example.a".
  std::string title() const;

  /// Queries the period with these indexes and stores them as the user's choice. Empties the rows until the answer
  /// comes. Replaces the query that runs.
  void refresh(std::int64_t length, std::int64_t period);
  /// Ends the query, and empties the rows.
  void cancel();
  /// Whether the lines of the period are being fetched. Not while newer ones are awaited.
  bool isRunning() const { return m_query && !m_isWaiting; }
  /// Whether new lines are shown as they come, and stores that as the user's choice. Ends if the helper fails.
  void setFollowing(bool isFollowing);
  bool isFollowing() const { return m_isFollowing; }

  const LogRows& rows() const { return m_rows; }
  void setFilter(const std::string& text);
  void setOrder(std::optional<LogOrder> order);

  /// The date of a row as text.
  std::string date(const LogRow& row) const { return m_dates.text(row.seconds); }
  /// How many lines there are, or why there are none.
  std::string status() const;
  /// The text of the rows with these indexes, one line each: date, separator and message. Empty without any.
  std::string copiedText(const std::vector<std::size_t>& rows) const;

  /// The regular files to which the job's output goes, that exist now: those of `StandardOutPath` and
  /// `StandardErrorPath` as far as they differ.
  struct OutputFile {
    std::string title;  ///< of the command that opens it
    URL url;
  };
  std::vector<OutputFile> outputFiles() const;
  /// Opens it in the desktop's program for it; shows an error if there is none.
  void open(const OutputFile& file);

  /// Posted when something but the rows has changed.
  Signal<>& stateChanged() { return m_stateChanged; }
  /// Posted before the rows change, and when they have changed.
  Signal<>& rowsWillChange() { return m_rowsWillChange; }
  Signal<LogChange>& rowsChanged() { return m_rowsChanged; }

 private:
  void send(messages::LogQuery query, bool isWaiting);
  void dropQuery();
  void replied(const messages::LogLines& log);
  void ended(bool isDone);
  void awaitLines();
  void queryNewer();
  void empty();
  template <typename Change>
  void changeRows(Change change);

  const SessionContext m_session;
  ActionController& m_actions;
  const std::string m_label;
  const Kind m_kind;
  const bool m_hasFile;
  std::vector<std::string> m_outputPaths;
  LogDates m_dates;
  LogRows m_rows;
  Delay m_delay;
  messages::LogQuery m_period;
  double m_since = 0;      ///< the beginning of the period
  Action::Shared m_query;  ///< null if none runs
  bool m_isWaiting = false;
  bool m_isFollowing = false;
  bool m_isAnswered = false;     ///< the lines of the period are known
  double m_pause = 0;            ///< before the next query for newer lines, in seconds
  std::uint64_t m_lastWait = 0;  ///< identifies the last pause
  Signal<> m_stateChanged;
  Signal<> m_rowsWillChange;
  Signal<LogChange> m_rowsChanged;
};

}  // namespace mirvel
