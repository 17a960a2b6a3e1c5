#include "core/process/UserEntry.h"

#include <grp.h>
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

/// The entry that was found, or null, and the error of the call.
template <typename Entry>
struct Found {
  Entry* entry;
  int failure;
};

/// Repeats a call with larger buffers while they are too small. The size isn't known in advance, and
/// sysconf(_SC_GETPW_R_SIZE_MAX) is only a suggestion.
template <typename Entry, typename Call>
Found<Entry> lookUp(std::vector<char>& buffer, const Call& call) {
  constexpr std::size_t largestEntry = std::size_t{1} << 20U;
  buffer.resize(4096);
  Entry* found = nullptr;
  int failure = ERANGE;
  while ((failure = call(&found)) == ERANGE && buffer.size() < largestEntry) buffer.resize(buffer.size() * 2);
  return {found, failure};
}

/// ENOENT and ESRCH are how some systems report that there is no such entry.
template <typename Entry>
std::optional<bool> presence(const Found<Entry>& found) {
  if (found.entry) return true;
  const bool isAnswer = found.failure == 0 || found.failure == ENOENT || found.failure == ESRCH;
  return isAnswer ? std::optional(false) : std::nullopt;
}

}  // namespace

std::optional<UserEntry> userEntry(uid_t user) {
  passwd entry{};
  std::vector<char> buffer;
  const auto [found, failure] = lookUp<passwd>(
      buffer, [&](passwd** result) { return ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), result); });
  if (failure != 0 || !found || !found->pw_name) return std::nullopt;
  return UserEntry{.login = found->pw_name,
                   .comment = textOf(found->pw_gecos),
                   .home = textOf(found->pw_dir),
                   .group = found->pw_gid};
}

std::optional<bool> isUser(const std::string& name) {
  passwd entry{};
  std::vector<char> buffer;
  return presence(lookUp<passwd>(buffer, [&](passwd** result) {
    return ::getpwnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), result);
  }));
}

std::optional<bool> isGroup(const std::string& name) {
  group entry{};
  std::vector<char> buffer;
  return presence(lookUp<group>(buffer, [&](group** result) {
    return ::getgrnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), result);
  }));
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
