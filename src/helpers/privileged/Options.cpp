#include "helpers/privileged/Options.h"

#include <charconv>

namespace mirvel {

namespace {

Error bad(std::string message) {
  return {.code = Error::Code::BadArgument, .message = std::move(message)};
}

std::optional<uid_t> userIn(const std::string& digits) {
  std::uint32_t user = 0;
  const char* end = digits.data() + digits.size();
  const auto [last, failure] = std::from_chars(digits.data(), end, user);
  return failure == std::errc() && last == end && user != UINT32_MAX ? std::optional<uid_t>(user) : std::nullopt;
}

}  // namespace

Result<PrivilegedOptions> PrivilegedOptions::read(const std::vector<std::string>& words, const Environment& environment,
                                                  uid_t realUser) {
  PrivilegedOptions options{.user = realUser};
  for (std::size_t i = 0; i < words.size(); i += 2) {
    const auto user = words[i] == "--user" && i + 1 < words.size() ? userIn(words[i + 1]) : std::nullopt;
    const bool isRoot = words[i] == "--root" && i + 1 < words.size() && words[i + 1].starts_with('/');
    if (!user && !isRoot) return bad("can't make sense of " + words[i]);
    if (user) options.user = *user;
    if (isRoot) options.root = words[i + 1];
  }
  const auto elevated = environment.find("PKEXEC_UID");
  if (elevated != environment.end()) {
    const auto user = userIn(elevated->second);
    if (!user) return bad("PKEXEC_UID names no user");
    options.user = *user;
  }
  const bool isElevated = elevated != environment.end() || realUser != 0 || options.user != 0;
  if (options.root && isElevated) return bad("another root is only for those who are root themselves");
  return options;
}

}  // namespace mirvel
