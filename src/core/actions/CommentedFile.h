#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

class Clock;
class Editing;
class Launchd;
struct Foundation;
struct Platform;
struct Roots;

/// The folder for copies of job files with comments, "Kept Files" in the application support folder.
std::filesystem::path keptFilesFolder(const Roots& roots);
/// Keeps the content of a job's file in that folder, which is created if necessary. The copy is named after the job and
/// the current time in UTC, such as "backup 2023-11-14T22.13.20Z.plist", and readable by the user only. Does nothing if
/// a file with the same content is there already.
Result<void> keepFile(const Roots& roots, const Clock& clock, const std::string& job, std::string_view bytes);

/// To be called before a save, which doesn't preserve comments. If the job's file has comments, asks the user whether
/// to save without them, and keeps a copy of the file. The user is asked once for each edit and content of the file.
/// Returns false, and the job must not be saved, if the user cancels or if the copy can't be written; the latter has
/// been shown to the user.
bool letCommentsGo(const Foundation& foundation, const Platform& platform, Editing& editing,
                   const std::shared_ptr<Launchd>& job);

}  // namespace mirvel
