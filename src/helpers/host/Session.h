#pragma once

#include <filesystem>

#include "core/process/Environment.h"

namespace mirvel::host {

/// The desktop session in which a host was started, according to its environment and the login manager.
class Session {
 public:
  static constexpr const char* usualRecords = "/run/systemd/sessions";

  /// `records` is the folder where the login manager (systemd-logind, elogind) has a file for each session. A session
  /// that is over already, or without a file, has no `record`.
  explicit Session(const Environment& environment, const std::filesystem::path& records = usualRecords);

  /// Those variables of the environment that identify the session, its display and its bus.
  const Environment& variables() const { return m_variables; }
  /// Whether an environment belongs to the same session: all of these variables are equal or missing in both.
  bool isThatOf(const Environment& environment) const { return variablesOf(environment) == m_variables; }
  /// The file that changes when the session ends; empty: the end of this session can't be noticed.
  const std::filesystem::path& record() const { return m_record; }
  /// Whether the user has logged out; false without a record.
  bool isOver() const;
  /// Whether the session has a display and its record says that it isn't over.
  bool isOpenDesktop() const;

 private:
  static Environment variablesOf(const Environment& environment);

  Environment m_variables;
  std::filesystem::path m_record;
};

}  // namespace mirvel::host
