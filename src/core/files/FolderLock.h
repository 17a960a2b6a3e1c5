#pragma once

#include <filesystem>

#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Keeps other processes that use this function from changing the files of a folder at the same time (flock(2)), until
/// the descriptor is closed. Waits at most a second, since anybody who can read the folder can hold the lock: then, and
/// if the folder doesn't exist or can't be locked, there is no lock, and the caller goes on without it.
FileDescriptor lockFolder(const std::filesystem::path& folder);

/// The same by a lock on a file of its own, for a folder that others can read: only its owner can open the file, and so
/// nobody else can hold the lock. Creates the file; its folder must exist.
FileDescriptor lockFile(const std::filesystem::path& file);

}  // namespace mirvel
