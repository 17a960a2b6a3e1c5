#include "helpers/privileged/PrivilegedOptions.h"

#include <cstdint>

#include "core/process/Arguments.h"
#include "core/text/Digits.h"

namespace mirvel {

namespace {

Error bad(std::string message) {
  return {.code = Error::Code::BadArgument, .message = std::move(message)};
}

std::optional<uid_t> userIn(const std::string& digits) {
  const auto user = Decimal::toInt(digits);
  return user && *user < UINT32_MAX ? std::optional(static_cast<uid_t>(*user)) : std::nullopt;
}

/// Stores the value of an option. Returns false if it is invalid.
bool store(std::string_view option, const std::string& value, PrivilegedOptions& options) {
  if (option == "--user") {
    const auto user = userIn(value);
    if (user) options.user = *user;
    return user.has_value();
  }
  if (option == "--process") {
    options.process = ProcessIdentity::from(value);
    return options.process.has_value();
  }
  if (option == "--root") options.root = value;
  if (option == "--agents") options.agents = value;
  if (option == "--host") options.host = value;
  if (option == "--installed") options.installed.emplace_back(value);
  return value.starts_with('/');
}

}  // namespace

Result<PrivilegedOptions> PrivilegedOptions::read(const std::vector<std::string>& words, const Environment& environment,
                                                  uid_t realUser) {
  PrivilegedOptions options{.user = realUser};
  const auto parsed = parseArguments(words, {{"--user", true},
                                             {"--process", true},
                                             {"--root", true},
                                             {"--agents", true},
                                             {"--host", true},
                                             {"--installed", true}});
  if (!parsed) return parsed.error();
  if (!parsed->operands.empty()) return bad("unknown argument " + parsed->operands.front());
  for (const auto& [option, value] : parsed->options) {
    if (!store(option, value, options)) return bad("invalid value for " + option);
  }
  const auto elevated = environment.find("PKEXEC_UID");
  if (elevated != environment.end()) {
    const auto user = userIn(elevated->second);
    if (!user) return bad("PKEXEC_UID isn't a user ID");
    options.user = *user;
  }
  const bool isElevated = elevated != environment.end() || options.user != realUser;
  if (options.root && isElevated) return bad("--root isn't allowed with elevated rights");
  return options;
}

}  // namespace mirvel
