#include "core/process/UserName.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

#include "core/text/Strings.h"

namespace mirvel {

namespace {

struct Entry {
  std::string login;
  std::string comment = {};
};

/// What the user database says of the user who runs the program.
Entry ownEntry() {
  constexpr std::size_t largestEntry = std::size_t{1} << 20U;
  passwd entry{};
  passwd* found = nullptr;
  int failure = ERANGE;
  std::vector<char> buffer(4096);
  while ((failure = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE &&
         buffer.size() < largestEntry) {
    buffer.resize(buffer.size() * 2);
  }
  if (failure != 0 || !found || !found->pw_name) return {.login = std::to_string(::getuid())};
  return {.login = found->pw_name, .comment = found->pw_gecos ? found->pw_gecos : ""};
}

}  // namespace

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
  return ownEntry().login;
}

std::string fullUserName() {
  const Entry entry = ownEntry();
  return personName(entry.comment, entry.login);
}

}  // namespace mirvel
