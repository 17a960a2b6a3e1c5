#pragma once

#include <filesystem>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel::host {

/// A named pipe in the folder that represents a machine. The creator of the folder (demo, tests) holds its write end;
/// the hosts of that machine notice when that process has ended, even if it was killed and the folder remains.
class Lifeline {
 public:
  /// Creates the pipe, and the folder if it doesn't exist. The lifeline is cut when all copies of the descriptor are
  /// closed. Fails if there is a pipe already.
  static Result<FileDescriptor> hold(const std::filesystem::path& machine);

  /// The read end, non-blocking; none if the machine has no lifeline.
  static FileDescriptor open(const std::filesystem::path& machine);
  /// Whether no process holds the write end any more; false for none. The descriptor becomes readable when that
  /// happens.
  static bool isCut(const FileDescriptor& lifeline);
};

}  // namespace mirvel::host
