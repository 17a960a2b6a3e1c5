#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/documents/ReadText.h"
#include "core/documents/TextEncoding.h"
#include "core/documents/TextForm.h"
#include "core/scripts/SyntaxType.h"

// Scripts on disk. All functions here access the disk and may take long, so they are for work queues.

namespace mirvel {

class FileCalls;

/// In bytes. Larger files aren't opened.
inline constexpr std::size_t largestScript = std::size_t{100} << 20U;

/// What identifies a file and its content.
struct FileState {
  dev_t device = 0;
  ino_t inode = 0;
  mode_t mode = 0;     ///< permission bits
  std::string digest;  ///< SHA-256 of the content; empty if there is no file
  /// The path, with links resolved when the file was read, has since become a link to this file.
  bool isLink = false;

  /// Only for a file that still exists: the numbers are soon used for another one.
  bool isSameFile(const FileState& other) const { return device == other.device && inode == other.inode; }
};

/// Why a file can't be saved from a script window.
enum class Protection {
  None,
  NotWritable,      ///< this user may not write it
  UnknownEncoding,  ///< the text in its encoding doesn't give the bytes of the file
};

/// A script as it was read.
struct LoadedScript {
  std::filesystem::path path = {};  ///< absolute, with symbolic links resolved
  std::string text = {};            ///< UTF-8
  TextEncoding encoding = {};
  FileState state = {};
  Protection protection = Protection::None;
  SyntaxType syntax = SyntaxType::none;
  TextForm form = {};
};

/// Reads a script, following symbolic links, and determines its encoding (`readText`), or uses the given one. Fails
/// like `RegularFile::open` and `readText`; `LimitExceeded` for a file larger than `largestScript`. Errors have the
/// path.
Result<LoadedScript> loadScript(const std::filesystem::path& path, const std::string& locale,
                                const std::optional<std::string>& encoding = {});

/// The present state of a file, following symbolic links. An empty digest if it doesn't exist; an error if it can't be
/// read.
Result<FileState> stateOf(const std::filesystem::path& path);
/// The same of an open file with this content, which was opened at `path`.
Result<FileState> stateOf(int file, std::string_view content, const std::filesystem::path& path);

/// A script to be written.
struct ScriptWrite {
  std::filesystem::path path;               ///< absolute, with symbolic links resolved
  std::shared_ptr<const std::string> text;  ///< UTF-8
  TextEncoding encoding = {};
  FileState expected = {};    ///< the file that may be replaced; the mode is used if it has been deleted
  bool mayOverwrite = false;  ///< the content of the file may be replaced instead of the file
};

/// Why replacing a file would lose something, so that its content must be overwritten instead.
enum class OverwriteReason {
  Links,        ///< it has further hard links
  Permissions,  ///< this user can't give a new file the same owner, group or mode
  Folder,       ///< this user can't create files in its folder
};

/// The outcome of writing a script.
struct ScriptWritten {
  enum class Kind {
    Written,      ///< `state` and `form` are those of the file; `error` if it may not survive a power failure
    Unencodable,  ///< a character isn't in the encoding
    Changed,      ///< another program has changed, replaced, deleted (an empty digest) or linked the file; writing with
                  ///< `state` as `expected` accepts that
    Overwrites,   ///< only possible with `mayOverwrite`, for `reason`
    InUse,        ///< only possible by overwriting, but these `processes` are using the file
    Failed,       ///< with `error`
  };

  Kind kind = Kind::Failed;
  FileState state = {};
  TextForm form = {};
  Unencodable unencodable = {};
  OverwriteReason reason = OverwriteReason::Links;
  std::vector<pid_t> processes = {};
  std::optional<Error> error = {};
};

/// Writes a script. The file is left as it is unless the outcome is `Written`.
///
/// The file is replaced by a new one (`replaceFile`), so that a shell that runs the old one goes on reading that. Only
/// if replacing would lose links, owner or mode, its content is overwritten, provided that no process has it open; if
/// that fails halfway, the old content is restored. Immediately before, when a new file is already on the disk, content
/// and identity of the old one are compared with `expected`, so that a file that another program has replaced by a copy
/// counts as changed, too. A file that was deleted is created again with its old mode.
///
/// The encoding is noted in an extended attribute, where there are any; one that is no longer right is removed.
/// `calls` is for tests that simulate failures.
ScriptWritten writeScript(const ScriptWrite& request, FileCalls* calls = nullptr);

/// Sets or clears the executable bits: those of everyone who may read the file. Returns the new state, without digest.
Result<FileState> setExecutable(const std::filesystem::path& path, bool isExecutable);

/// The name of the extended attribute in which the encoding of a file is kept.
extern const char* const textEncodingAttributeName;

}  // namespace mirvel
