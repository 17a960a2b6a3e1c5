#include "helpers/host/Session.h"

#include <array>
#include <system_error>

#include "core/files/ReadFile.h"

namespace mirvel::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* numberVariable = "XDG_SESSION_ID";

/// The variable is untrusted and becomes a file name.
bool isPlainName(const std::string& name) {
  return !name.empty() && name.find('/') == std::string::npos && !name.starts_with('.');
}

}  // namespace

Session::Session(const Environment& environment, const fs::path& records) : m_variables(variablesOf(environment)) {
  const auto number = environment.find(numberVariable);
  if (number == environment.end() || !isPlainName(number->second)) return;
  std::error_code failure;
  const fs::path record = records / number->second;
  if (fs::exists(record, failure)) m_record = record;
  if (isOver()) m_record.clear();  // the host outlives it on purpose, as in a terminal multiplexer
}

Environment Session::variablesOf(const Environment& environment) {
  constexpr std::array names = {numberVariable, "DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS",
                                "XDG_RUNTIME_DIR"};
  Environment result;
  for (const char* const name : names) {
    const auto found = environment.find(name);
    if (found != environment.end() && !found->second.empty()) result.insert(*found);
  }
  return result;
}

// The record of a session remains until its last process has ended, and this host may be that process: until then the
// record has the state "closing".
bool Session::isOver() const {
  if (m_record.empty()) return false;
  constexpr std::size_t largest = 65536;
  const auto text = readFile(m_record, largest);
  if (!text) return text.error().code == Error::Code::NotFound;
  return ("\n" + *text).find("\nSTATE=closing\n") != std::string::npos;
}

bool Session::isOpenDesktop() const {
  return (m_variables.contains("DISPLAY") || m_variables.contains("WAYLAND_DISPLAY")) && !m_record.empty() && !isOver();
}

}  // namespace mirvel::host
