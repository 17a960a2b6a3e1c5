#include "ctl/Input.h"

#include <array>
#include <istream>

#include "core/files/ReadFile.h"
#include "core/propertylist/Reader.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {

namespace {

Result<std::string> readStream(std::istream& stream) {
  std::string bytes;
  std::array<char, 65536> buffer;
  while (stream.read(buffer.data(), buffer.size()), stream.gcount() > 0) {
    bytes.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
    if (bytes.size() > propertylist::Limits::bytes) {
      return Error{.code = Error::Code::LimitExceeded, .message = "the input is larger than a gibibyte"};
    }
  }
  if (stream.bad()) return Error{.code = Error::Code::Io, .message = "can't read"};
  return bytes;
}

}  // namespace

Result<std::string> readInput(const std::string& file, const Context& context) {
  if (file == "-") return readStream(context.in);
  auto bytes = readFile(file, propertylist::Limits::bytes);
  if (bytes) return bytes;
  Error error = bytes.error();
  error.file.clear();
  return error;
}

std::string inputName(const std::string& file) {
  return file == "-" ? "standard input" : file;
}

std::string errorLine(const std::string& file, Error error) {
  error.file = inputName(file);
  return printable(error.text());
}

}  // namespace mirvel::ctl
