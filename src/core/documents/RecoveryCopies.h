#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/documents/ScriptFile.h"

namespace mirvel {

/// Unsaved text of a script.
struct RecoveryCopy {
  std::string id;
  std::filesystem::path path;  ///< of the script
  TextEncoding encoding;       ///< in which it would have been saved
  FileState base;              ///< the file from which the edit started
  std::string text;            ///< UTF-8
};

/// Keeps unsaved texts of scripts, so that they survive a crash: a file for each, accessible to the user only. Files
/// are written on a work queue. Main thread only, except for `left`.
class RecoveryCopies {
 public:
  /// Uses the folder "Scripts" in `support`. The queue must outlive this object, and start tasks in their order.
  RecoveryCopies(const std::filesystem::path& support, WorkQueue& queue);

  using Written = std::function<void(const Result<void>&)>;

  /// Writes a copy, in place of an earlier one with the same ID. `written` is called afterwards, on the work queue.
  void keep(std::shared_ptr<const RecoveryCopy> copy, Written written);
  /// The same, but has written the copy when it returns.
  Result<void> keepNow(const RecoveryCopy& copy);
  /// Removes a copy, if there is one, before it returns: the program may be about to end.
  void remove(const std::string& id);
  /// What earlier runs have left.
  struct Left {
    std::vector<RecoveryCopy> copies;
    std::vector<Error> failures;  ///< with the path of a copy that can't be read
  };
  /// Reads all files. Damaged ones are kept under another name, ".damaged" added, so that they are told once.
  Left left() const;

 private:
  class Files;

  std::shared_ptr<Files> m_files;
  WorkQueue& m_queue;
};

}  // namespace mirvel
