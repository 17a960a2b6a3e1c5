#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/process/ProcessRunner.h"
#include "core/scripts/SyntaxType.h"

namespace mirvel {

struct Commands;

/// What an interpreter complains about.
struct SyntaxProblem {
  std::size_t line = 0;  ///< counted from 1; 0: unknown
  std::string message;   ///< in the words of the interpreter

  bool operator==(const SyntaxProblem&) const = default;
};

/// How the syntax of a script is checked without running any of it. There is no check for Perl, whose own would run the
/// BEGIN blocks of the script.
struct SyntaxCheck {
  std::string program;
  std::vector<std::string> arguments;  ///< before the path of the script

  /// The check for a script with this text, by the interpreter that its first line names, or the usual one of the
  /// language. Null if there is none, or the program isn't installed.
  static std::optional<SyntaxCheck> of(SyntaxType syntax, std::string_view text, const Commands& commands);

  /// Checks the bytes of a script by means of a file in `folder`, which is removed afterwards. Null if the syntax is
  /// right. For a work queue; takes at most ten seconds.
  Result<std::optional<SyntaxProblem>> run(std::string_view bytes, const std::filesystem::path& folder,
                                           ProcessRunner& runner) const;
};

/// The first complaint in what an interpreter has printed about a file of this path, which is left out of the message.
SyntaxProblem problemIn(std::string_view complaints, const std::string& path);

}  // namespace mirvel
