#include "core/process/UserEntry.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

#include "core/text/Strings.h"

namespace mirvel {

namespace {

std::string textOf(const char* text) {
  return text ? text : "";
}

}  // namespace

std::optional<UserEntry> userEntry(uid_t user) {
  constexpr std::size_t largestEntry = std::size_t{1} << 20U;
  passwd entry{};
  passwd* found = nullptr;
  int failure = ERANGE;
  // The size isn't known in advance, and sysconf(_SC_GETPW_R_SIZE_MAX) is only a suggestion.
  std::vector<char> buffer(4096);
  while ((failure = ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found)) == ERANGE &&
         buffer.size() < largestEntry) {
    buffer.resize(buffer.size() * 2);
  }
  if (failure != 0 || !found || !found->pw_name) return std::nullopt;
  return UserEntry{.login = found->pw_name,
                   .comment = textOf(found->pw_gecos),
                   .home = textOf(found->pw_dir),
                   .group = found->pw_gid};
}

std::string personName(std::string_view comment, const std::string& login) {
  std::string name;
  for (const char c : comment.substr(0, comment.find(','))) {
    if (c == '&') {
      name += String::firstUppercased(login);
    } else {
      name += c;
    }
  }
  const std::string_view trimmed = String::trim(name);
  return trimmed.empty() ? login : std::string(trimmed);
}

std::string loginName() {
  const auto entry = userEntry(::getuid());
  return entry ? entry->login : std::to_string(::getuid());
}

std::string fullUserName() {
  const auto entry = userEntry(::getuid());
  return entry ? personName(entry->comment, entry->login) : std::to_string(::getuid());
}

}  // namespace mirvel
