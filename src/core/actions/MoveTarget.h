#pragma once

#include <optional>

#include "core/catalogue/Kind.h"
#include "core/support/Roots.h"
#include "core/support/URL.h"

namespace mirvel {

/// Where a job's file goes in the folder of another kind: under its own name or, where something has that, in a folder
/// named after it, under a name that is new. None if the kind has no folder.
std::optional<URL> moveTarget(Kind kind, const URL& url, const Roots& roots);

/// What the file of a job of that name is called, without its extension: the name with "_" in place of each "/". One
/// that is too long for a file name loses its end.
std::string jobFileName(const std::string& name);

/// Where the file of a new job goes: named after the job. Where something has that name, or where the name is empty or
/// too long for a file, a new UUID ends it. None if the kind has no folder.
std::optional<URL> newFileURL(Kind kind, const std::string& name, const Roots& roots);

}  // namespace mirvel
