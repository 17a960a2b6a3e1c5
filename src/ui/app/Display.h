#pragma once

#include "core/process/Environment.h"

namespace mirvel::ui {

/// Whether there is something to show windows on. Qt itself would end the process with a page of plugin names.
inline bool hasDisplay(const Environment& environment) {
#ifdef __linux__
  const auto isSet = [&](const char* name) {
    const auto found = environment.find(name);
    return found != environment.end() && !found->second.empty();
  };
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
#else
  (void)environment;
  return true;
#endif
}

}  // namespace mirvel::ui
