#pragma once

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// The words of a command line, without the program's name.
using Arguments = std::span<const std::string>;

struct Option {
  std::string_view name;  ///< with its dashes
  bool takesValue = false;
};

/// A command line, separated into options and operands.
struct ParsedArguments {
  std::vector<std::string> operands;
  std::vector<std::pair<std::string, std::string>> options;  ///< names and values, in order; without a value: empty

  bool has(std::string_view option) const { return value(option).has_value(); }
  /// The option's last value; none if it wasn't given.
  std::optional<std::string> value(std::string_view option) const;
};

/// Options may stand anywhere before `--`, their value as the next word or behind `=`. Fails with `BadArgument` on an
/// unknown option, a value too many or one that is missing.
Result<ParsedArguments> parseArguments(Arguments arguments, std::initializer_list<Option> known);

}  // namespace mirvel
