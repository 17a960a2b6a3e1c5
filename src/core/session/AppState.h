#pragma once

#include <string>

#include "core/session/Busy.h"

namespace mirvel {

/// What is in progress, and the filter. For the main thread.
struct AppState {
  Busy saving = {};    ///< saves from their first request, or the password, to the last answer
  Busy deleting = {};  ///< deletions, in the same way
  Busy scanning = {};
  std::string filterString;  ///< text of the search field
};

}  // namespace mirvel
