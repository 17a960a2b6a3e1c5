#include "core/ports/Console.h"

#include <cstdio>

namespace mirvel {

namespace {

void writeLine(std::FILE* stream, const std::string& line) {
  // One call, since stdio locks the stream per call: two would let another thread's line in between.
  const std::string whole = line + '\n';
  (void)std::fwrite(whole.data(), 1, whole.size(), stream);  // there is nowhere to report a failure
  (void)std::fflush(stream);
}

}  // namespace

void StandardConsole::print(const std::string& line) {
  writeLine(stdout, line);
}

void StandardConsole::log(const std::string& line) {
  writeLine(stderr, line);
}

}  // namespace mirvel
