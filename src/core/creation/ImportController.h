#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/creation/KindChoices.h"
#include "core/support/URL.h"

namespace mirvel {

class Program;

/// Asks for a job file, and shows the sheet that imports it.
void importAction(Program& program, bool showsHiddenFiles);
/// Shows the sheet that imports these files, one after the other.
void importFiles(Program& program, std::vector<URL> files);

/// The sheet that makes new jobs of files. A file stays where it is; its job gets a file of its own. For the main
/// thread.
class ImportController {
 public:
  /// Takes over the files that are to be imported. The program outlives it.
  explicit ImportController(Program& program);

  /// "Import – backup.plist", and of several files which of them it is.
  std::string title() const;
  std::string kindTitle() const;
  /// None is on at first; what was chosen for one file is for the next one too.
  std::optional<Kind> chosenKind() const { return m_kind; }
  void kindChanged(int tag) { m_kind = kindOfTag(tag); }
  bool isImportEnabled() const { return m_kind.has_value(); }
  /// Whether there are files behind this one, so that it can be left out.
  bool hasMore() const { return m_current + 1 < m_files.size(); }
  std::string skipTitle() const;

  /// Imports the file, and goes on to the next one; tells the user why if it can't, and stays. True: all are done, and
  /// the sheet is to be dismissed.
  bool importFile();
  /// Leaves the file out. True: that was the last one.
  bool skip();

 private:
  const URL* current() const { return m_current < m_files.size() ? &m_files[m_current] : nullptr; }

  Program& m_program;
  const std::vector<URL> m_files;
  std::size_t m_current = 0;
  std::optional<Kind> m_kind;
};

}  // namespace mirvel
