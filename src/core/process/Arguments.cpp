#include "core/process/Arguments.h"

#include <algorithm>

namespace mirvel {

namespace {

Error usage(const std::string& message) {
  return {.code = Error::Code::BadArgument, .message = message};
}

}  // namespace

std::optional<std::string> ParsedArguments::value(std::string_view option) const {
  const auto last =
      std::find_if(options.rbegin(), options.rend(), [&](const auto& given) { return given.first == option; });
  return last == options.rend() ? std::nullopt : std::optional(last->second);
}

Result<ParsedArguments> parseArguments(Arguments arguments, std::initializer_list<Option> known) {
  ParsedArguments result;
  bool isAfterDashes = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (isAfterDashes || argument.size() < 2 || argument[0] != '-') {
      result.operands.push_back(argument);
      continue;
    }
    if (argument == "--") {
      isAfterDashes = true;
      continue;
    }
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto* const option =
        std::find_if(known.begin(), known.end(), [&](const Option& candidate) { return candidate.name == name; });
    if (option == known.end()) return usage("unknown option " + name);
    if (!option->takesValue && equals != std::string::npos) return usage("option " + name + " takes no value");
    if (option->takesValue && equals == std::string::npos && i + 1 == arguments.size()) {
      return usage("option " + name + " requires a value");
    }
    std::string value;
    if (option->takesValue) value = equals == std::string::npos ? arguments[++i] : argument.substr(equals + 1);
    result.options.emplace_back(name, std::move(value));
  }
  return result;
}

}  // namespace mirvel
