#pragma once

#include <memory>

#ifdef __linux__
#include "ui/support/InotifyFolderMonitors.h"
#else
#include "ui/support/WatcherFolderMonitors.h"
#endif

namespace mirvel::ui {

/// The implementation of FolderMonitors that detects most changes on this platform.
inline std::unique_ptr<FolderMonitors> platformFolderMonitors() {
#ifdef __linux__
  return std::make_unique<InotifyFolderMonitors>();
#else
  return std::make_unique<WatcherFolderMonitors>();
#endif
}

}  // namespace mirvel::ui
