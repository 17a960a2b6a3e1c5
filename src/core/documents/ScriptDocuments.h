#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/documents/RecoveryCopies.h"
#include "core/documents/ScriptDocument.h"
#include "core/documents/ScriptRevisions.h"
#include "core/files/URL.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

/// The scripts that are open in windows: one window for each file. Decides whether they may be closed, one by one or
/// all together. For the main thread.
class ScriptDocuments {
 public:
  /// The number of scripts that the list of recent ones has.
  static constexpr std::size_t mostRecent = 10;

  /// Both must outlive this object.
  ScriptDocuments(Foundation& foundation, const Platform& platform);
  ~ScriptDocuments();

  /// Sets what creates windows; null removes it. Without it, nothing can be opened.
  void setMakeView(ScriptDocument::MakeView make) { m_makeView = std::move(make); }

  /// Asks for a file, and opens it.
  void chooseAndOpen(bool showsHiddenFiles);
  /// Opens a script in a window, or brings the window to the front that shows this file already, by whatever path. The
  /// file is read on a work queue; a failure is told.
  void open(const URL& script);
  /// Asks about the copies of unsaved text that an earlier run has left, one after another.
  void offerRecovered();

  const std::vector<std::unique_ptr<ScriptDocument>>& documents() const { return m_documents; }
  /// The revisions of all scripts.
  ScriptRevisions& revisions() { return m_revisions; }
  /// The scripts that were opened last, the latest first.
  std::vector<std::string> recent() const;
  void clearRecent();

  /// Closes a window, after a question if there is unsaved text. The document is destroyed later, so that the window
  /// may call this.
  void close(ScriptDocument& document);

  /// Whether nothing would be lost if the program quit: no save is in progress, and all text is saved or may be lost.
  bool maySettle() const;
  /// Asks about each script with unsaved text, and waits for saves. `done` is called with true once nothing would be
  /// lost any more, or with false if the user has cancelled or a save has failed. All windows stay open. A call while
  /// another review is in progress does nothing.
  void review(std::function<void(bool mayQuit)> done);
  /// Forgets which texts may be lost, because quitting was cancelled.
  void forgetDecisions();
  /// Does the same as `review` before it returns.
  bool reviewNow();
  /// Writes the recovery copies of all unsaved texts before it returns. Returns false if one couldn't be written.
  bool keepCopies();
  /// Removes all documents without a question, because the program quits. Copies of texts that were kept stay.
  void closeAll(bool keepsCopies);

 private:
  enum class Decision { Save, Discard, Cancel };

  void load(const std::filesystem::path& path, const std::optional<RecoveryCopy>& copy);
  void loaded(const std::filesystem::path& path, Result<LoadedScript> script, const std::optional<RecoveryCopy>& copy);
  void show(LoadedScript script, const std::filesystem::path& path, const std::optional<RecoveryCopy>& copy);
  void addRecent(const std::filesystem::path& path);
  Decision ask(ScriptDocument& document);
  void finishClosing(ScriptDocument& document);
  ScriptDocument* unsettled() const;
  void reviewNext();
  void endReview(bool mayQuit);
  void tellUnreadableCopies();
  void askAboutNextCopy();
  bool contains(const ScriptDocument* document) const;

  Foundation& m_foundation;
  const Platform& m_platform;
  RecoveryCopies m_copies;
  ScriptRevisions m_revisions;
  const DocumentContext m_context;
  ScriptDocument::MakeView m_makeView;
  std::vector<std::unique_ptr<ScriptDocument>> m_documents;
  std::vector<std::filesystem::path> m_opening;
  RecoveryCopies::Left m_left;  ///< to be told and asked about
  std::function<void(bool)> m_review;
  std::shared_ptr<Outbox> m_outbox;
  Delay m_delay;
};

}  // namespace mirvel
