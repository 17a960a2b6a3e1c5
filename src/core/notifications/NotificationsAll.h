#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/notifications/Exceptions.h"
#include "core/session/SessionContext.h"

namespace mirvel {

/// The rows of the tab of the notification preferences that lists all jobs. For the main thread.
class NotificationsAll {
 public:
  struct Row {
    std::string name;
    std::string toolTip;  ///< the path of a launchd job; empty for others
    bool isEnabled;       ///< whether the row can be changed
    bool tellsChanges;
    std::optional<bool> tellsFailures;  ///< none if failures of such jobs aren't announced
    bool areFailuresEnabled;            ///< whether that can be changed
  };

  /// Both must outlive this.
  NotificationsAll(const SessionContext& session, Exceptions& exceptions)
      : m_session(session), m_exceptions(exceptions) {}

  /// Reads the catalogue, the exceptions and the settings anew: all jobs but login items and those of extra
  /// folders, whose changes and failures aren't announced, sorted by name.
  void reload();
  const std::vector<Row>& rows() const { return m_rows; }

  /// The user has clicked a box of the row with this name. Jobs of the same name share an entry. Reloads the rows.
  void setTellsChanges(const std::string& name, bool isOn);
  void setTellsFailures(const std::string& name, bool isOn);

 private:
  const SessionContext m_session;
  Exceptions& m_exceptions;
  std::vector<Row> m_rows;
};

}  // namespace mirvel
