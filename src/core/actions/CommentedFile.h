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

/// The folder of files that are kept as they were.
std::filesystem::path keptFilesFolder(const Roots& roots);
/// Keeps the bytes of a job's file there, named after the job and the time, readable by the user alone. Does nothing if
/// the same bytes are kept already.
Result<void> keepFile(const Roots& roots, const Clock& clock, const std::string& job, std::string_view bytes);

/// A save writes no comments. If the job's file has some, asks the user whether they may go, once for each edit, and
/// keeps the file as it is. False if the user cancelled, or the file couldn't be kept, which has been reported; then
/// the job isn't to be saved.
bool letCommentsGo(const Foundation& foundation, const Platform& platform, Editing& editing,
                   const std::shared_ptr<Launchd>& job);

}  // namespace mirvel
