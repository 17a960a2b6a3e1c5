#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "core/actions/Action.h"
#include "core/base/Result.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// What a helper is asked to do, as it reads it from the dictionary that was sent.
struct Request {
  using Kind = Action::Kind;
  struct LogQuery {
    std::chrono::seconds period{};
    std::string text;
  };

  Kind kind = Kind::quitHelper;
  std::optional<std::filesystem::path> path = {};
  std::optional<std::filesystem::path> deletePath = {};
  std::optional<std::filesystem::path> testPath = {};
  std::optional<std::filesystem::path> testOutputPath = {};
  std::optional<std::string> string = {};
  std::optional<std::string> label = {};
  std::optional<mode_t> mode = {};  ///< that a new file is to have at most
  std::optional<LogQuery> logQuery = {};

  /// Refuses an unknown kind, a key that the kind needs and that is missing, values of other types, paths that
  /// aren't absolute, and labels that name no job.
  static Result<Request> read(const propertylist::Dictionary& dictionary);
};

}  // namespace mirvel
