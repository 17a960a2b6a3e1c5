#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "ctl/Command.h"

namespace mirvel::ctl {

struct Option {
  std::string_view name;  ///< with its dashes
  bool takesValue = false;
};

/// A command's arguments, told apart.
struct ParsedArguments {
  std::vector<std::string> operands;
  std::map<std::string, std::string, std::less<>> options;  ///< by name; without a value: empty

  bool has(std::string_view option) const { return options.find(option) != options.end(); }
};

/// Options may stand anywhere before `--`, their value behind a blank or `=`. Fails with `BadArgument`.
Result<ParsedArguments> parseArguments(Arguments arguments, std::initializer_list<Option> known);

}  // namespace mirvel::ctl
