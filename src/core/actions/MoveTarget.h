#pragma once

#include <optional>

#include "core/catalogue/Kind.h"
#include "core/support/Roots.h"
#include "core/support/URL.h"

namespace mirvel {

/// Where a job's file goes in the folder of another kind: under its own name or, where something has that, in a folder
/// named after it, under a name that is new. None if the kind has no folder.
std::optional<URL> moveTarget(Kind kind, const URL& url, const Roots& roots);

/// Where the file of a new job goes: named after the job, or, where something has that name, with what makes it a new
/// one behind it. None if the kind has no folder.
std::optional<URL> newFileURL(Kind kind, const std::string& name, const Roots& roots);

}  // namespace mirvel
