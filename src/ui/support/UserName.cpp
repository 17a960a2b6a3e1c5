#include "ui/support/UserName.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

#include "core/support/Strings.h"

namespace mirvel::ui {

std::string personName(std::string_view comment, const std::string& login) {
  std::string name;
  for (const char character : comment.substr(0, comment.find(','))) {
    if (character == '&') {
      name += String::firstUppercased(login);
    } else {
      name += character;
    }
  }
  const auto first = name.find_first_not_of(" \t");
  if (first == std::string::npos) return login;
  return name.substr(first, name.find_last_not_of(" \t") - first + 1);
}

std::string fullUserName() {
  constexpr std::size_t mostBytes = 1024UL * 1024;
  passwd entry{};
  passwd* found = nullptr;
  for (std::vector<char> buffer(4096); buffer.size() <= mostBytes; buffer.resize(buffer.size() * 2)) {
    const int failure = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    if (failure == ERANGE) continue;
    if (failure != 0 || !found) break;
    return personName(found->pw_gecos ? found->pw_gecos : "", found->pw_name);
  }
  return std::to_string(::getuid());
}

}  // namespace mirvel::ui
