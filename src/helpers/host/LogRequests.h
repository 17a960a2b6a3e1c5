#pragma once

#include <chrono>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "helpers/host/Connection.h"
#include "helpers/host/JobLog.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

/// The queries of the log that haven't been answered. One with `after` waits until a line with a larger number is
/// logged, or its time is over. For one thread.
class LogRequests {
 public:
  /// Between two answers with new lines of the same label, so that lines that come together are answered together.
  static constexpr std::chrono::milliseconds pause{50};
  static constexpr int answersPerTurn = 8;  ///< of the loop: each may contain megabytes

  /// The log must outlive this object.
  explicit LogRequests(JobLog& log) : m_log(log) {}

  /// Adds a query, which `settle` answers. `now` is on the running clock. False if the client has too many.
  bool add(const std::shared_ptr<Connection>& client, std::int64_t id, const hostdata::Log& request,
           std::chrono::milliseconds now);
  /// Removes a query without an answer. False if there is none.
  bool cancel(const std::shared_ptr<Connection>& client, std::int64_t id);
  /// Sends the answers that are due, and forgets the queries of clients that are gone.
  void settle(std::chrono::milliseconds now);
  /// When to call `settle` again if no line is logged before, on the running clock.
  std::optional<std::chrono::milliseconds> wakeAt() const;
  /// The labels for whose lines somebody waits.
  const std::set<std::string>& labels() const { return m_labels; }

 private:
  using milliseconds = std::chrono::milliseconds;
  struct Waiting {
    std::weak_ptr<Connection> client;
    std::int64_t id;
    std::string label;
    LogRange range;
    std::int64_t seen;  ///< the number of the newest line for which there was no reason to answer
    milliseconds until;
  };

  /// When the query is to be answered unless a line is logged before.
  milliseconds dueAt(const Waiting& waiting) const;
  /// Whether the query has been answered.
  bool answer(Connection& client, Waiting& waiting, milliseconds now);

  JobLog& m_log;
  std::list<Waiting> m_waiting;
  std::set<std::string> m_labels;
  std::map<std::string, milliseconds> m_answeredAt;  ///< by label, for `pause`
};

}  // namespace mirvel::host
