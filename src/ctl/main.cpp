#include <iostream>
#include <vector>

#include "ctl/Command.h"

int main(int argc, char** argv) {
  using namespace mirvel::ctl;
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const Streams streams{.out = std::cout, .err = std::cerr};
  if (arguments.size() > 1 && arguments[0] == "show") return show(Arguments(arguments).subspan(1), streams);
  if (arguments.size() > 1 && arguments[0] == "convert") return convert(Arguments(arguments).subspan(1), streams);
  return 2;
}
