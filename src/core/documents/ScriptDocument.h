#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/documents/RecoveryCopies.h"
#include "core/documents/ScriptFile.h"
#include "core/documents/ScriptRevisions.h"
#include "core/documents/ScriptView.h"
#include "core/documents/SyntaxCheck.h"
#include "core/documents/TextForm.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

struct Foundation;
struct Platform;

/// What documents work with. All parts outlive them.
struct DocumentContext {
  Foundation& foundation;
  const Platform& platform;
  RecoveryCopies& copies;
  ScriptRevisions& revisions;
};

/// A script that is open in a window. Decides when it is edited, what a save writes and what is asked before. The text
/// itself is in the window. The file is written on a work queue, and only by `save` and `saveNow`. For the main thread.
class ScriptDocument {
 public:
  using Done = std::function<void(bool isSaved)>;
  using MakeView = std::function<std::unique_ptr<ScriptView>(ScriptDocument&)>;

  /// Scripts above this size, in bytes, are shown without colours.
  static constexpr std::size_t largestColoured = std::size_t{4} << 20U;

  /// `opened` is the path by which the user knows the file, maybe through a link.
  ScriptDocument(const DocumentContext& context, LoadedScript script, std::filesystem::path opened);
  ~ScriptDocument();
  ScriptDocument(const ScriptDocument&) = delete;
  ScriptDocument& operator=(const ScriptDocument&) = delete;

  /// Creates the window and fills it. With a copy, its text is shown as an unsaved edit.
  void show(const MakeView& make, const std::optional<RecoveryCopy>& copy = {});
  ScriptView& view() { return *m_view; }

  const std::filesystem::path& path() const { return m_path; }
  const std::filesystem::path& openedPath() const { return m_opened; }
  std::string name() const { return m_opened.filename().string(); }
  const TextEncoding& encoding() const { return m_encoding; }
  const FileState& file() const { return m_file; }
  const TextForm& form() const { return m_form; }
  SyntaxType syntax() const { return m_syntax; }
  Protection protection() const { return m_protection; }
  bool isLoading() const { return m_isLoading; }
  bool isSaving() const { return m_isSaving; }
  bool isExecutable() const { return (m_file.mode & 0111U) != 0; }
  bool isLarge() const { return m_size > largestColoured; }
  /// Whether there is text that isn't in the file, also while it is being written there.
  bool isEdited() const;
  /// Whether a save is in progress, or unsaved text of an earlier run is being loaded.
  bool isBusy() const { return m_isSaving || (m_isLoading && m_isUnsaved); }
  bool canSave() const { return !m_isLoading && m_protection == Protection::None; }
  /// What the user should know about the file or its text; empty if nothing is unusual.
  std::string notice() const;
  /// Whether the script can't be run as its lines end, and other line ends would help.
  bool needsUnixLineEnds() const { return m_form.hasUnusableInterpreter && canSave(); }

  /// To be called by the window after every change of the text.
  void textChanged();
  /// Replaces the text by an earlier one, as an edit.
  void restore(const std::string& text);
  /// The same with a copy of unsaved text, which then belongs to this document.
  void restoreCopy(const RecoveryCopy& copy);
  void setSyntax(SyntaxType syntax);

  /// Writes the text to the file, and asks the user if that would lose something. `done` is called once on the main
  /// thread, unless the document is closed before. If a save is in progress, another one follows it. If the document
  /// can't be saved, the user is told why.
  void save(Done done = {});
  /// Does the same before it returns, for the end of the desktop session. Fails while another save is in progress.
  bool saveNow();
  /// Calls `start` once the text is in the file: at once, or after the user has agreed to save it. Otherwise never.
  void beforeRun(const std::function<void()>& start);
  /// Saves in another encoding, which is kept if that succeeds.
  void saveWith(const TextEncoding& encoding);
  /// Reads the file again, with another encoding if one is given. Asks before unsaved text is lost, unless the user has
  /// agreed to lose the present one. A later save or another call cancels it.
  void reload(const std::optional<std::string>& encoding = {}, bool mayDiscard = false);
  /// Makes the file executable, or not, at once.
  void setExecutable(bool isExecutable);
  /// Makes all lines end alike, as an edit.
  void convertLineEnds(LineEnd lineEnd);

  /// Earlier saved texts, the newest first.
  std::vector<ScriptRevisions::Revision> revisions() const { return m_context.revisions.of(m_path); }

  /// Checks the syntax of the text as it is in the window. `done` gets null if it is right, and isn't called if the
  /// document is closed before. `canCheckSyntax` tells whether there is a check.
  void checkSyntax(const std::function<void(const std::optional<SyntaxProblem>&)>& done);
  bool canCheckSyntax() const;

  /// Calls `done` when the document isn't busy any more.
  void whenIdle(std::function<void()> done);
  /// Notes whether the user has agreed that the unsaved text is lost. An edit ends that.
  void setDiscarded(bool isDiscarded);
  bool isDiscarded() const { return m_discardedEdits == m_edits; }
  /// Writes the recovery copy of unsaved text before it returns. Returns false if that failed.
  bool keepCopyNow();
  void removeCopy();

 private:
  struct Attempt;

  void fill(std::string text);
  void filled();
  void reloaded(const Result<LoadedScript>& script, int discardable);
  bool mayBeReloaded();
  void becameIdle();
  void tellWhyItCannotBeSaved();
  void keepCopy();
  void copied(const Result<void>& written, const TextForm& form, int edits);
  RecoveryCopy copyOfText() const;

  std::shared_ptr<Attempt> beginSave(const TextEncoding& encoding, Done done);
  void run(const std::shared_ptr<Attempt>& attempt);
  bool answer(Attempt& attempt, const ScriptWritten& outcome);
  void finish(const std::shared_ptr<Attempt>& attempt, const ScriptWritten& outcome);
  void written(const Attempt& attempt, const ScriptWritten& outcome);
  void endSave(const std::shared_ptr<Attempt>& attempt, bool isSaved);
  void reportFailure(const std::string& message, const Error& error);
  void changed();

  const DocumentContext m_context;
  std::filesystem::path m_path;
  const std::filesystem::path m_opened;
  std::string m_text;  ///< until it is in the window
  TextEncoding m_encoding;
  FileState m_file;
  Protection m_protection;
  SyntaxType m_syntax;
  TextForm m_form;
  TextForm m_formOfFile;
  std::size_t m_size = 0;
  std::string m_copyId;
  std::unique_ptr<ScriptView> m_view;
  bool m_isLoading = true;
  bool m_isSaving = false;
  bool m_isUnsaved = false;  ///< there is text that isn't in the file although the window's text is unmodified
  bool m_hasCopy = false;
  bool m_wasEdited = false;
  bool m_isCopyDue = false;
  std::string m_copyFailure;  ///< why the last recovery copy couldn't be written
  int m_edits = 0;
  int m_discardedEdits = -1;
  int m_reloads = 0;  ///< counts what cancels reading the file again
  std::vector<Done> m_nextSave;
  std::vector<std::function<void()>> m_whenIdle;
  std::shared_ptr<Outbox> m_outbox;
  Delay m_delay;
};

}  // namespace mirvel
