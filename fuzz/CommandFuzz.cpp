#include <string>
#include <string_view>

#include "Check.h"
#include "core/editor/ParseEnvironment.h"
#include "core/text/Strings.h"
#include "core/text/Text.h"

using namespace mirvel;

namespace {

/// Variables that were parsed, written as quoted assignments, are parsed to the same variables.
void checkEnvironment(std::string_view text) {
  const auto variables = parseEnvironment(text);
  if (!variables) return;
  std::string lines;
  for (const auto& [name, value] : *variables) lines += "export " + name + '=' + String::shellWord(value) + '\n';
  const auto again = parseEnvironment(lines);
  FUZZ_CHECK(again && *again == *variables);
}

}  // namespace

/// A command line can always be split, and quoting and joining its arguments gives a line that splits into the same
/// arguments.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  checkEnvironment(text);
  const auto arguments = Text::separateCommand(text);
  FUZZ_CHECK(!arguments.empty());
  std::string command;
  for (const std::string& argument : arguments) command += (command.empty() ? "" : " ") + String::quote(argument);
  FUZZ_CHECK(Text::separateCommand(command) == arguments);
  return 0;
}
