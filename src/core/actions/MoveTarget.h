#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "core/base/Result.h"
#include "core/catalogue/Kind.h"
#include "core/files/Roots.h"
#include "core/files/URL.h"

namespace mirvel {

/// Tells of paths that can't be used besides those where something is: a save under way may be about to write there.
using IsTaken = std::function<bool(const std::filesystem::path&)>;

/// Where a job's file goes in the folder of another kind: under its own name or, where something has that, with a new
/// UUID at the end of its name. None if the kind has no folder.
std::optional<URL> moveTarget(Kind kind, const URL& url, const Roots& roots, const IsTaken& isTaken = {});

/// Makes the folder of the user's own agents where it is missing. Nobody else may write in it, whatever the umask:
/// jobs aren't loaded from such a folder.
Result<void> makeAgentsFolder(const Roots& roots);

/// What the file of a job of that name is called, without its extension: the name with "_" in place of each "/". One
/// that is too long for a file name loses its end.
std::string jobFileName(const std::string& name);

/// Where the file of a new job goes: named after the job. Where something has that name, or where the name is empty or
/// too long for a file, a new UUID ends it. None if the kind has no folder.
std::optional<URL> newFileURL(Kind kind, const std::string& name, const Roots& roots, const IsTaken& isTaken = {});

}  // namespace mirvel
