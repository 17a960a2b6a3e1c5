#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/base/Error.h"
#include "core/propertylist/Document.h"
#include "core/propertylist/Encoding.h"
#include "core/text/Bytes.h"

/// How the readers report errors. Internal to them: `read` catches every `ReadFailure` and returns an `Error`.
namespace mirvel::propertylist {

/// The exception that carries an error out of a reader, so that its many small functions needn't return results.
struct ReadFailure {
  std::string message;
  std::size_t offset;  ///< in the UTF-8 text or the binary list
  Error::Code code = Error::Code::Malformed;
};

[[noreturn]] inline void fail(std::string_view message, std::size_t offset, Error::Code code = Error::Code::Malformed) {
  throw ReadFailure{.message = std::string(message), .offset = offset, .code = code};
}

/// For a container at `offset` that exceeds `Limits::depth`.
[[noreturn]] inline void failTooDeep(std::size_t offset) {
  fail("arrays and dictionaries are nested more than " + std::to_string(Limits::depth) + " levels deep", offset,
       Error::Code::LimitExceeded);
}

/// Text of the list for a message, in backticks. Long or invalid text is replaced by "something": it would hide the
/// message, or make it invalid itself.
inline std::string quoted(std::string_view text) {
  constexpr std::size_t longest = 40;
  if (text.size() > longest || !isUtf8(text)) return "something";
  return '`' + std::string(text) + '`';
}

/// A byte for a message: `0x1f`.
inline std::string hexByte(unsigned char byte) {
  const char c = static_cast<char>(byte);
  return "0x" + toHex({&c, 1});
}

}  // namespace mirvel::propertylist
