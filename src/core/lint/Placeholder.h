#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Text that was meant to be replaced, but that launchd uses literally.
struct Placeholder {
  enum class Kind {
    Tilde,     ///< at the beginning; a shell replaces it with the home folder
    Variable,  ///< a shell replaces it with the value
    Template   ///< filled in by tools that generate job files
  };
  Kind kind;
  std::string text;  ///< as written in the file, such as `${HOME}`
};

/// The first placeholder in a path or another text that shouldn't contain any. Only the first 4096 bytes are searched.
std::optional<Placeholder> findPlaceholder(std::string_view text);

/// The shell expansion at the beginning of an argument. Further on a dollar sign is legitimate, so it isn't searched
/// for.
std::optional<Placeholder> leadingExpansion(std::string_view text);

/// Warns about a placeholder in the text at `path`. `homeFolder` is the only one that can have been meant; if it isn't
/// empty, the warning suggests it instead of `~`, and there is a fix where it completes the text.
void warnOfPlaceholder(const Placeholder& placeholder, const std::string& text, const std::string& homeFolder,
                       const std::string& keyPath, const jobfile::OpaqueValue::Path& path, Findings& findings);

}  // namespace mirvel::lint
