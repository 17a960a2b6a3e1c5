#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace mirvel {

/// Why something failed, for the caller (`code`) and for the person (`text()`).
struct Error {
  enum class Code {
    NotFound,             ///< the file or folder doesn't exist
    NotPermitted,         ///< it exists, and this user may not touch it
    Io,                   ///< reading or writing failed for another reason
    Malformed,            ///< the bytes are no property list
    UnsupportedEncoding,  ///< the text is in an encoding that can't be read
    LimitExceeded,        ///< a bound on depth, count or size was hit
    MissingKey,           ///< a required key is absent
    WrongType,            ///< a key holds a value of another type than it must
    NoForm,               ///< a key that may hold values of several forms holds none of them
    BadArgument,          ///< the caller asked for something that can't be
    NotTrusted,           ///< somebody else than root and the user could have written the file
    StillRunning,         ///< a job that was asked to end hasn't ended within the time
    NotRunning,           ///< the program that was to be asked isn't running
    HungUp,               ///< the peer closed the connection instead of answering; it may have done what was asked
    Cancelled,            ///< the caller gave up waiting, or asked for the work to be dropped
  };
  static constexpr Code lastCode = Code::Cancelled;  ///< codes travel as numbers, of which no other is valid

  Code code;
  std::string message;                       ///< one clause, without the place, without a full stop
  std::string file = {};                     ///< path, where one is known
  std::size_t line = 0;                      ///< counted from 1; 0: not a matter of lines
  std::size_t column = 0;                    ///< in bytes of UTF-8 text, counted from 1
  std::optional<std::uint64_t> offset = {};  ///< byte offset in a binary list
  std::string keyPath = {};                  ///< such as `KeepAlive.SuccessfulExit` or `Sockets.Listener[0]`
  int systemCode = 0;                        ///< the errno value of a system call that failed; 0: none did

  /// The sentence for a person, place first: "line 13, column 12: <integer> holds `12x`, which is no number".
  std::string text() const;
};

/// Error for what `errno` says of a system call on `path`; `doing` completes "can't ...", as in "can't read".
Error systemError(int errnoValue, const std::string& doing, const std::string& path);

}  // namespace mirvel
