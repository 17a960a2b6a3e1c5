#include "helpers/privileged/Options.h"

#include <cstdint>

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

/// Whether the word and its value make sense.
bool take(const std::string& word, const std::string& value, PrivilegedOptions& options) {
  if (word == "--user") {
    const auto user = userIn(value);
    if (user) options.user = *user;
    return user.has_value();
  }
  if (word == "--process") {
    options.process = ProcessIdentity::from(value);
    return options.process.has_value();
  }
  if (!value.starts_with('/')) return false;
  if (word == "--root") options.root = value;
  if (word == "--agents") options.agents = value;
  if (word == "--host") options.host = value;
  if (word == "--installed") options.installed.emplace_back(value);
  return word == "--root" || word == "--agents" || word == "--host" || word == "--installed";
}

}  // namespace

Result<PrivilegedOptions> PrivilegedOptions::read(const std::vector<std::string>& words, const Environment& environment,
                                                  uid_t realUser) {
  PrivilegedOptions options{.user = realUser};
  for (std::size_t i = 0; i < words.size(); i += 2) {
    if (i + 1 == words.size() || !take(words[i], words[i + 1], options)) return bad("can't make sense of " + words[i]);
  }
  const auto elevated = environment.find("PKEXEC_UID");
  if (elevated != environment.end()) {
    const auto user = userIn(elevated->second);
    if (!user) return bad("PKEXEC_UID names no user");
    options.user = *user;
  }
  const bool isElevated = elevated != environment.end() || options.user != realUser;
  if (options.root && isElevated) return bad("another root is only for those who have these rights themselves");
  return options;
}

}  // namespace mirvel
