#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

class Launchd;
class Program;

/// Where files are kept as they were, among the program's own stores.
std::filesystem::path keptFilesFolder(const Program& program);
/// Keeps the bytes of a job's file there, under the job's name and the time, for the user alone, unless the same
/// bytes are kept already.
Result<void> keepFile(const Program& program, const std::string& job, std::string_view bytes);

/// A save writes no comments. If the job's file has some, asks the user whether they may go, once for each edit, and
/// keeps the file as it is. False: the user went back, or the file can't be kept, which they were told; then the job
/// isn't to be saved.
bool letCommentsGo(Program& program, const std::shared_ptr<Launchd>& job);

}  // namespace mirvel
