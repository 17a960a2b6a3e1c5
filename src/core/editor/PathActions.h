#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/editor/Fields.h"

namespace mirvel {

struct Platform;

/// An item of the menu beside the path of a field.
struct PathAction {
  enum class Kind {
    Open,               ///< opens the file or folder like a double click
    Reveal,             ///< shows it in the file viewer
    CreateFolder,       ///< creates the folder, or that of the file
    UseForOtherOutput,  ///< writes the path to the field of the job's other output
  };

  Kind kind;
  std::string title;  ///< localized
};

/// The actions for the path in a field. Empty unless the path is absolute, since launchd doesn't expand others.
std::vector<PathAction> pathActions(const Field& field, std::string_view path, const Localize& localize);

/// The field of a job's other output: that of standard error for standard output, and vice versa; null for other
/// fields.
const Field* otherOutput(const Field& field);

/// Carries out an action that doesn't change the job. Shows an error if it fails. For the main thread.
void performPathAction(PathAction::Kind action, const Field& field, const std::string& path, const Platform& platform,
                       const Localize& localize);

}  // namespace mirvel
