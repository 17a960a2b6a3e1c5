#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace mirvel {

/// Why an operation failed. Callers decide by `code`, people read `text()`; nothing may depend on the words of a
/// message. Members that don't apply keep their defaults.
struct Error {
  enum class Code {
    NotFound,             ///< the file or folder doesn't exist
    NotPermitted,         ///< it exists, but this user lacks the permission
    Io,                   ///< reading or writing failed for another reason
    Malformed,            ///< the data isn't valid in its format
    UnsupportedEncoding,  ///< the encoding of the text is unknown, or its bytes are invalid in it
    LimitExceeded,        ///< a limit on depth, count or size was exceeded
    MissingKey,           ///< a required key is absent
    WrongType,            ///< the value of a key has the wrong type
    NoForm,               ///< the value of a key that allows several forms has none of them
    BadArgument,          ///< the request itself is invalid
    NotTrusted,           ///< users other than root and the user could have written the file
    StillRunning,         ///< a job that was asked to stop hasn't stopped in time
    NotRunning,           ///< the program that should answer isn't running
    HungUp,               ///< the peer closed the connection without answering; it may have executed the request
    Cancelled,            ///< the caller stopped waiting, or cancelled the request
  };
  static constexpr Code lastCode = Code::Cancelled;  ///< codes are sent as numbers; higher ones are invalid

  Code code;
  std::string message;                       ///< one clause, without location and full stop; untranslated
  std::string file = {};                     ///< path, if known
  std::size_t line = 0;                      ///< counted from 1; 0: not applicable
  std::size_t column = 0;                    ///< in bytes of UTF-8, counted from 1
  std::optional<std::uint64_t> offset = {};  ///< byte offset in binary data
  std::string keyPath = {};                  ///< such as `KeepAlive.SuccessfulExit` or `Sockets.Listener[0]`
  int systemCode = 0;                        ///< errno of the system call that failed; 0: none

  /// File, position or offset, key path and message, as far as they are known:
  /// "/a.plist: line 13, column 12: <integer> contains `12x`, which isn't a number". The key path is omitted if the
  /// message starts with it.
  std::string text() const;
};

/// The error of a system call that failed with this errno value. `doing` completes "can't ...", as in "can't read".
///
/// ENOENT and ENOTDIR give `NotFound`; EACCES, EPERM and EROFS give `NotPermitted`; all others give `Io`.
Error systemError(int errnoValue, const std::string& doing, const std::string& path);

}  // namespace mirvel
