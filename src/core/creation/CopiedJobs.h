#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Error.h"
#include "core/catalogue/Kind.h"
#include "core/files/URL.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Interface;
class Selection;
struct CreationContext;
struct Roots;

/// Asks the user for a job file, and shows the import sheet for it. Does nothing if the user cancels.
void importAction(const CreationContext& context, bool showsHiddenFiles);
/// Shows the import sheet for these files. Does nothing if there are none, or if no sheet is registered.
void importFiles(const CreationContext& context, std::vector<URL> files);

/// The files that may be job files: those with the extension ".plist" in any case, except folders. Keeps their order.
/// Accesses the disk.
///
///     {"/a.plist", "/b.txt", "/C.PLIST"} → {"/a.plist", "/C.PLIST"}
std::vector<URL> importableFiles(const std::vector<std::filesystem::path>& files);

/// Asks the user for a file, and writes the selected launchd job to it. Shows an error if this fails. Does nothing if
/// another kind of job, or none, is selected. If not everyone may read the job's file, the same is true of the export,
/// since the job may contain a password.
void exportJob(const Selection& selection, const Roots& roots, Interface& interface);

/// The sheet that copies the selected job under another name. Main thread only.
class DuplicateController {
 public:
  /// The context must outlive the controller.
  explicit DuplicateController(const CreationContext& context) : m_context(context) {}

  /// "Duplicate – backup".
  std::string title() const;
  /// "Name:".
  std::string nameTitle() const;
  /// The initial text of the name field: "backup copy", or the name entered for an earlier copy of the same job that
  /// couldn't be saved.
  std::string suggestedName() const;

  /// Saves the copy as a new job of the same kind, with all keys of the original, including unknown ones. Returns
  /// whether the sheet is to be dismissed. If not, the user has been shown why, except where the sheet shouldn't have
  /// been open: without a selected launchd job, or with unsaved changes.
  bool save(const std::string& name);

 private:
  std::string selectedName() const;

  const CreationContext& m_context;
};

/// The sheet that creates jobs from files, one after the other. The files themselves are left untouched: each job gets
/// a file of its own. Main thread only.
///
/// The view must be updated after each operation and when `changed` is called.
class ImportController {
 public:
  /// Moves the files out of `Creation::filesToImport`. The context must outlive the controller.
  explicit ImportController(const CreationContext& context);

  /// "Import – backup.plist", or "Import – backup.plist – 1 of 3".
  std::string title() const;
  /// "For:".
  std::string kindTitle() const;
  /// Initially nullopt. A choice also applies to the following files.
  std::optional<Kind> chosenKind() const { return m_kind; }
  /// Handles a click on the button with this tag (`kindOfTag`). An unknown tag makes `chosenKind` nullopt.
  void kindChanged(int tag);
  /// Whether a kind has been chosen and no save is in progress.
  bool isImportEnabled() const { return m_kind.has_value() && !m_isSaving; }
  /// Whether more files follow the current one, so that it can be skipped.
  bool hasMore() const { return m_current + 1 < m_files.size(); }
  bool isSkipEnabled() const { return !m_isSaving; }
  std::string skipTitle() const;

  /// Imports the current file. If this isn't possible the user is shown the reason and the file stays the current one;
  /// otherwise the next one becomes current once the job has been written, and `changed` is called. Returns true if
  /// this was the last file and the sheet is to be dismissed.
  bool importFile();
  /// Goes on to the next file without importing this one; does nothing during a save. Returns true if there is none
  /// and the sheet is to be dismissed.
  bool skip();

  /// Called when the save that `importFile` started has succeeded or failed.
  std::function<void()> changed = {};

 private:
  const URL* current() const { return m_current < m_files.size() ? &m_files[m_current] : nullptr; }

  void showFailure(Error reason);
  void ended(bool isWritten);

  const CreationContext& m_context;
  const Delay m_delay;
  const std::vector<URL> m_files;
  std::size_t m_current = 0;
  std::optional<Kind> m_kind;
  bool m_isSaving = false;
};

}  // namespace mirvel
