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

/// The arguments of a program, without its name.
using Arguments = std::span<const std::string>;

/// An option that a program accepts.
struct Option {
  std::string_view name;  ///< including its dashes: "--json", "-q"
  bool takesValue = false;
};

/// A command line separated into options and operands.
struct ParsedArguments {
  std::vector<std::string> operands;
  std::vector<std::pair<std::string, std::string>> options;  ///< names and values in order; flags have an empty value

  /// Whether the option was given at least once.
  bool has(std::string_view option) const { return value(option).has_value(); }
  /// The last value of the option; nullopt if it wasn't given.
  std::optional<std::string> value(std::string_view option) const;
};

/// Parses a command line. Options may be mixed with operands up to an argument `--`, after which everything is an
/// operand. A value is the next argument or follows `=`. `-` alone is an operand. Names can't be abbreviated, short
/// options can't be combined, and an option may be repeated.
///
/// `BadArgument` for an unknown option, a missing value, or a value for an option that has none.
///
///     parseArguments({"a", "--root", "/x", "--json"}, {{"--json"}, {"--root", true}})
///     // operands: a; options: --root "/x", --json ""
Result<ParsedArguments> parseArguments(Arguments arguments, std::initializer_list<Option> known);

}  // namespace mirvel
