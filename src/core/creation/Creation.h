#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/creation/New.h"
#include "core/files/URL.h"

namespace mirvel {

class KindTexts;

/// The state that the sheets that create jobs leave for each other. For the main thread.
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

/// A radio button for whom a new job is; its tag is the kind's number.
struct KindChoice {
  Kind kind;
  std::string title;

  bool operator==(const KindChoice&) const = default;
};

/// For the user, for everyone, and for root.
std::vector<KindChoice> kindChoices(KindTexts& texts);
/// None for a tag that no button has.
std::optional<Kind> kindOfTag(int tag);

}  // namespace mirvel
