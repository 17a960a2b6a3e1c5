#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/creation/New.h"
#include "core/files/URL.h"

namespace mirvel {

/// What the sheets that create jobs find when they open. For the main thread.
struct Creation {
  /// The last new job that couldn't be saved after its sheet had gone. The next sheet goes on from there, so that
  /// nothing has to be typed again.
  std::optional<New> unsaved = {};
  /// The files that the next import is about.
  std::vector<URL> filesToImport = {};

  /// The last copy that couldn't be saved after its sheet had gone: of which job file, and the name that was typed.
  struct Copy {
    URL source;
    std::string name;
  };
  std::optional<Copy> unsavedCopy = {};

  std::optional<New> takeUnsaved() { return std::exchange(unsaved, std::nullopt); }
};

}  // namespace mirvel
