#pragma once

#include <iosfwd>
#include <span>
#include <string>

/// The commands of the terminal companion. Each takes what stands behind its name, and gives the exit status.
namespace mirvel::ctl {

enum ExitStatus { Success = 0, Failed = 1, Usage = 2 };

struct Streams {
  std::ostream& out;
  std::ostream& err;
  bool hasColour = false;  ///< of both
};

using Arguments = std::span<const std::string>;

/// Shows property lists in words, or as JSON.
int show(Arguments arguments, const Streams& streams);
/// Writes a property list in its other form.
int convert(Arguments arguments, const Streams& streams);

/// All of it: finds the command by its name.
int run(Arguments arguments, const Streams& streams);

}  // namespace mirvel::ctl
