#include "core/process/Environment.h"

#ifdef __APPLE__
#include <crt_externs.h>
#else
#include <unistd.h>
#endif

namespace mirvel {

namespace {

char** variables() {
#ifdef __APPLE__
  return *_NSGetEnviron();
#else
  return environ;
#endif
}

}  // namespace

Environment processEnvironment() {
  Environment result;
  for (char** entry = variables(); entry && *entry; ++entry) {
    const std::string text = *entry;
    const auto equals = text.find('=');
    if (equals != std::string::npos) result.emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  return result;
}

}  // namespace mirvel
