#pragma once

#include <filesystem>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel::host {

/// A named pipe in the folder that stands for a machine. Whoever made the folder holds it, and the hosts below notice
/// when that process is gone, even if it was killed and the folder is still there.
class Lifeline {
 public:
  /// Makes it, and the folder if need be. It is cut when what is returned is closed.
  static Result<FileDescriptor> hold(const std::filesystem::path& machine);

  /// The other end. None: nobody has made one, and the machine stays.
  static FileDescriptor grasp(const std::filesystem::path& machine);
  /// Whether nobody holds it any more; can be asked when the descriptor can be read.
  static bool isCut(const FileDescriptor& grasped);
};

}  // namespace mirvel::host
