#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

struct Option {
  std::string_view name;  ///< with its dashes
  bool takesValue = false;
};

/// A subcommand's arguments, separated into operands and options.
struct ParsedArguments {
  std::vector<std::string> operands;
  std::map<std::string, std::string, std::less<>> options;  ///< by name; the value is empty for an option without one

  bool has(std::string_view option) const { return options.find(option) != options.end(); }
};

/// Options may appear anywhere before `--`. A value follows as the next argument or after `=`. If an option is
/// repeated, the last value wins. Fails with `BadArgument`.
Result<ParsedArguments> parseArguments(Arguments arguments, std::initializer_list<Option> known);

}  // namespace mirvel::ctl
