#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/support/Environment.h"
#include "core/support/Result.h"

namespace mirvel {

/// For whom the privileged helper works, and where.
struct PrivilegedOptions {
  uid_t user = 0;
  std::optional<std::filesystem::path> root = {};  ///< stands in for the machine's own

  /// From the words behind the program's name: `--user N`, `--root DIR`. Under pkexec the user is the one that
  /// pkexec(1) names in PKEXEC_UID, whatever the words say. Another root is for those who were root before: it is
  /// refused when the rights come from an elevation.
  static Result<PrivilegedOptions> read(const std::vector<std::string>& words, const Environment& environment,
                                        uid_t realUser);
};

}  // namespace mirvel
