#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Error.h"
#include "core/creation/Creation.h"
#include "core/files/URL.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

struct CreationContext;

/// Asks for a job file, and shows the sheet that imports it.
void importAction(const CreationContext& context, bool showsHiddenFiles);
/// Shows the sheet that imports these files, one after the other.
void importFiles(const CreationContext& context, std::vector<URL> files);

/// Of files that are handed over together, those that can be job files by their names, in the same order. Looks at the
/// disk: a folder is none.
std::vector<URL> importableFiles(const std::vector<std::filesystem::path>& files);

/// The sheet that makes new jobs of files. A file stays where it is; its job gets a file of its own. For the main
/// thread.
///
/// Whoever shows it draws it anew after each of its operations and when `changed` is called.
class ImportController {
 public:
  /// Takes over the files that are to be imported. The context outlives it.
  explicit ImportController(const CreationContext& context);

  /// "Import – backup.plist", and of several files which of them it is.
  std::string title() const;
  std::string kindTitle() const;
  /// None is on at first; what was chosen for one file is for the next one too.
  std::optional<Kind> chosenKind() const { return m_kind; }
  void kindChanged(int tag) { m_kind = kindOfTag(tag); }
  bool isImportEnabled() const { return m_kind.has_value() && !m_isSaving; }
  /// Whether there are files behind this one, so that it can be left out.
  bool hasMore() const { return m_current + 1 < m_files.size(); }
  bool isSkipEnabled() const { return !m_isSaving; }
  std::string skipTitle() const;

  /// Imports the file; tells the user why if it can't, and stays. Goes on to the next one, if there is one, as soon as
  /// the job is written. True: that was the last one, and the sheet is to be dismissed.
  bool importFile();
  /// Leaves the file out. True: that was the last one.
  bool skip();

  /// Called when it has gone on to the next file, or learned that it can't.
  std::function<void()> changed = {};

 private:
  const URL* current() const { return m_current < m_files.size() ? &m_files[m_current] : nullptr; }

  void tellOfFailure(Error reason);
  void ended(bool isWritten);

  const CreationContext& m_context;
  const Delay m_delay;
  const std::vector<URL> m_files;
  std::size_t m_current = 0;
  std::optional<Kind> m_kind;
  bool m_isSaving = false;
};

}  // namespace mirvel
