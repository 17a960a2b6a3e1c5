#pragma once

#include <filesystem>
#include <string>

#include "core/process/Environment.h"

namespace mirvel::host {

/// The session of a desktop in which a host was started, as its environment tells.
class Session {
 public:
  static constexpr const char* usualRecords = "/run/systemd/sessions";

  /// `records` is where the login manager (systemd-logind, elogind) keeps one file for each session.
  explicit Session(const Environment& environment, const std::filesystem::path& records = usualRecords);

  /// The variables by which a session's programs find it.
  const Environment& variables() const { return m_variables; }
  /// Whether those variables are of the same session.
  bool isThatOf(const Environment& environment) const { return variablesOf(environment) == m_variables; }
  /// The file that changes when the session ends; empty where no login manager keeps one, or it was over already.
  const std::filesystem::path& record() const { return m_record; }
  /// Whether the user has logged out. Never where there is no record.
  bool isOver() const;
  /// Whether the session is known to be there, and has a display for its jobs.
  bool isOpenDesktop() const;

 private:
  static Environment variablesOf(const Environment& environment);

  Environment m_variables;
  std::filesystem::path m_record;
};

}  // namespace mirvel::host
