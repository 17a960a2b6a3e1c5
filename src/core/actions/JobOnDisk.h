#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/catalogue/Kind.h"
#include "core/files/Roots.h"
#include "core/files/URL.h"

/// Job files as they are on disk at the time of the call, and the paths for new ones. Symbolic links are followed,
/// except where it is said otherwise. Nothing is cached.
namespace mirvel {

/// The content of a job's file. Nullopt if there is no such file, it can't be read, or it is larger than
/// `JobFolder::largestFile`.
std::optional<std::string> jobBytes(const URL& url);
/// The label in the file. Nullopt if the file can't be read, isn't a property list, or has no label.
std::optional<std::string> jobLabel(const URL& url);
/// Whether the file can be parsed and the job in it isn't disabled.
bool isEnabledOnDisk(const URL& url);
/// The permission bits of a regular file that not everyone may read, so that copies of it can be made just as private;
/// nullopt for any other file.
std::optional<int> restrictedMode(const URL& url);

/// Whether nothing is at the path, not even a broken link, or something is. Neither function follows links, and both
/// return false if this can't be determined.
bool isGone(const URL& url);
bool isPresent(const URL& url);

/// Returns whether a path must not be used although no file is there, because a save is about to write to it.
using IsTaken = std::function<bool(const std::filesystem::path&)>;

/// The path for the file of a job that is moved to the folder of another kind: the same name or, if that is in use, the
/// name with a new UUID appended. A broken link counts as in use. Nullopt if the kind has no folder.
///
///     "/Users/x/Library/LaunchAgents/a.plist" to the folder of daemons → "/Library/LaunchDaemons/a.plist"
std::optional<URL> moveTarget(Kind kind, const URL& url, const Roots& roots, const IsTaken& isTaken = {});

/// The path for the file of a new job, named after it: `jobFileName`, with a new UUID appended if the path is in use,
/// or the name is empty or too long. Nullopt if the kind has no folder.
///
///     "a/b" → "a_b.plist"
std::optional<URL> newFileURL(Kind kind, const std::string& name, const Roots& roots, const IsTaken& isTaken = {});

/// The name for the file of a job, without an extension: the job's name with "_" in place of "/", truncated at a
/// character boundary if it is too long for a file system.
std::string jobFileName(const std::string& name);

/// Creates the folder of the user's own agents if it doesn't exist. Others get no write permission, whatever the umask:
/// jobs aren't loaded from a folder that others can write to.
Result<void> makeAgentsFolder(const Roots& roots);

}  // namespace mirvel
