#include <string>
#include <string_view>

#include "Check.h"
#include "core/text/Strings.h"
#include "core/text/Text.h"

using namespace mirvel;

/// A command line can always be split, and quoting and joining its arguments gives a line that splits into the same
/// arguments.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto arguments = Text::separateCommand({reinterpret_cast<const char*>(data), size});
  FUZZ_CHECK(!arguments.empty());
  std::string command;
  for (const std::string& argument : arguments) command += (command.empty() ? "" : " ") + String::quote(argument);
  FUZZ_CHECK(Text::separateCommand(command) == arguments);
  return 0;
}
