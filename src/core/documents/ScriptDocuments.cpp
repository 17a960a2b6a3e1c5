#include "core/documents/ScriptDocuments.h"

#include <algorithm>
#include <utility>

#include "core/documents/ScriptTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace fs = std::filesystem;

ScriptDocuments::ScriptDocuments(Foundation& foundation, const Platform& platform)
    : m_foundation(foundation),
      m_platform(platform),
      m_copies(foundation.roots.applicationSupport, platform.fileQueue),
      m_revisions(foundation.roots.applicationSupport, foundation.defaults, platform.clock, foundation.storeTroubles),
      m_context{foundation, platform, m_copies, m_revisions},
      m_outbox(std::make_shared<Outbox>(platform.mainQueue)),
      m_delay(platform.mainQueue) {}

ScriptDocuments::~ScriptDocuments() {
  m_outbox->close();
}

void ScriptDocuments::chooseAndOpen(bool showsHiddenFiles) {
  const auto file = m_platform.interface.openPanel({.showsHiddenFiles = showsHiddenFiles});
  if (file) open(URL::file(*file));
}

void ScriptDocuments::open(const URL& script) {
  const auto shows = [&](const auto& document) {
    return script.equalTo(URL::file(document->openedPath())) || script.equalTo(URL::file(document->path()));
  };
  const auto found = std::find_if(m_documents.begin(), m_documents.end(), shows);
  if (found != m_documents.end()) return (*found)->view().bringToFront();
  if (m_makeView) load(script.path(), {});
}

void ScriptDocuments::load(const fs::path& path, const std::optional<RecoveryCopy>& copy) {
  if (!copy && std::find(m_opening.begin(), m_opening.end(), path) != m_opening.end()) return;
  m_opening.push_back(path);
  const auto onMain = m_delay.whileOwned([this, path, copy](const std::shared_ptr<Result<LoadedScript>>& script) {
    loaded(path, std::move(*script), copy);
  });
  m_platform.checkQueue.add([path, locale = m_foundation.localize.locale(), outbox = m_outbox, onMain] {
    outbox->post(
        [onMain, script = std::make_shared<Result<LoadedScript>>(loadScript(path, locale))] { onMain(script); });
  });
}

void ScriptDocuments::loaded(const fs::path& path, Result<LoadedScript> script,
                             const std::optional<RecoveryCopy>& copy) {
  std::erase(m_opening, path);
  if (script) return show(*std::move(script), path, copy);
  if (copy) {
    LoadedScript lost;  // saving asks whether to create the file again, or tells what prevents it
    lost.path = path;
    return show(std::move(lost), path, copy);
  }
  m_platform.interface.error(ScriptTexts(m_foundation.localize).couldntOpenDocument(path.filename().string()),
                             script.error().text());
}

void ScriptDocuments::show(LoadedScript script, const fs::path& path, const std::optional<RecoveryCopy>& copy) {
  const auto isSame = [&](const auto& document) {
    if (document->path() == script.path) return true;
    // Only then asks the disk of the other document, which may not answer: numbers are used again for other files.
    std::error_code failure;
    return !script.state.digest.empty() && document->file().isSameFile(script.state) &&
           fs::equivalent(document->path(), script.path, failure);
  };
  const auto found = std::find_if(m_documents.begin(), m_documents.end(), isSame);
  if (found != m_documents.end()) {
    if (copy) (*found)->restoreCopy(*copy);
    return (*found)->view().bringToFront();
  }
  if (!m_makeView) return;
  m_documents.push_back(std::make_unique<ScriptDocument>(m_context, std::move(script), path));
  m_documents.back()->show(m_makeView, copy);
  addRecent(path);
}

std::vector<std::string> ScriptDocuments::recent() const {
  return m_foundation.defaults.texts(Defaults::Key::recentScripts);
}

void ScriptDocuments::clearRecent() {
  (void)m_foundation.defaults.remove(Defaults::Key::recentScripts);  // failures have been reported
}

/// A path that isn't UTF-8 can't be in the settings.
void ScriptDocuments::addRecent(const fs::path& path) {
  const std::string text = path.string();
  if (storeKey(URL::file(path)) != text) return;
  auto paths = recent();
  std::erase(paths, text);
  paths.insert(paths.begin(), text);
  if (paths.size() > mostRecent) paths.resize(mostRecent);
  (void)m_foundation.defaults.setTexts(Defaults::Key::recentScripts, paths);  // failures have been reported
}

ScriptDocuments::Decision ScriptDocuments::ask(ScriptDocument& document) {
  const ScriptTexts texts(m_foundation.localize);
  document.view().bringToFront();
  const int answer = m_platform.interface.alert({.message = texts.saveChanges(document.name()),
                                                 .informativeText = texts.changesWillBeLost(),
                                                 .defaultTitle = m_foundation.localize.save(),
                                                 .alternateTitle = texts.dontSave(),
                                                 .otherTitle = m_foundation.localize.cancel()});
  if (answer == Interface::defaultButton) return Decision::Save;
  return answer == Interface::alternateButton ? Decision::Discard : Decision::Cancel;
}

bool ScriptDocuments::contains(const ScriptDocument* document) const {
  return std::any_of(m_documents.begin(), m_documents.end(), [&](const auto& each) { return each.get() == document; });
}

void ScriptDocuments::close(ScriptDocument& document) {
  ScriptDocument* const closed = &document;
  if (document.isBusy()) return document.whenIdle([this, closed] { close(*closed); });
  if (!document.isEdited()) return finishClosing(document);
  const Decision decision = ask(document);
  if (!contains(closed) || decision == Decision::Cancel) return;
  if (decision == Decision::Discard) return finishClosing(document);
  document.save([this, closed](bool isSaved) {
    if (isSaved && contains(closed)) close(*closed);
  });
}

void ScriptDocuments::finishClosing(ScriptDocument& document) {
  document.removeCopy();
  document.setDiscarded(true);
  m_delay(0, [this, closed = &document] {
    std::erase_if(m_documents, [&](const auto& each) { return each.get() == closed; });
  });
}

/// The first document that prevents quitting; null if there is none.
ScriptDocument* ScriptDocuments::unsettled() const {
  const auto found = std::find_if(m_documents.begin(), m_documents.end(), [](const auto& document) {
    return document->isBusy() || (document->isEdited() && !document->isDiscarded());
  });
  return found == m_documents.end() ? nullptr : found->get();
}

bool ScriptDocuments::maySettle() const {
  return !unsettled();
}

void ScriptDocuments::review(std::function<void(bool mayQuit)> done) {
  if (m_review) return;
  m_review = std::move(done);
  m_delay(0, [this] { reviewNext(); });  // not within the event that closes a window
}

void ScriptDocuments::reviewNext() {
  ScriptDocument* const document = unsettled();
  if (!document) return endReview(true);
  if (document->isBusy()) {
    return document->whenIdle(m_delay.whileOwned([this] { m_delay(0, [this] { reviewNext(); }); }));
  }
  const Decision decision = ask(*document);
  if (decision == Decision::Cancel) return endReview(false);
  if (!contains(document)) return reviewNext();
  if (decision == Decision::Discard) {
    document->setDiscarded(true);
    return reviewNext();
  }
  document->save([this](bool isSaved) {
    if (!isSaved) return endReview(false);
    m_delay(0, [this] { reviewNext(); });
  });
}

void ScriptDocuments::endReview(bool mayQuit) {
  if (!mayQuit) forgetDecisions();
  if (const auto done = std::exchange(m_review, nullptr)) done(mayQuit);
}

void ScriptDocuments::forgetDecisions() {
  for (const auto& document : m_documents) document->setDiscarded(false);
}

bool ScriptDocuments::reviewNow() {
  while (ScriptDocument* const document = unsettled()) {
    if (document->isBusy()) {
      const ScriptTexts texts(m_foundation.localize);
      m_platform.interface.error(texts.isBeingSaved(document->name()), texts.endTheSessionLater());
      return false;
    }
    const Decision decision = ask(*document);
    if (decision == Decision::Discard) document->setDiscarded(true);
    if (decision == Decision::Discard) continue;
    if (decision == Decision::Save && document->saveNow()) continue;
    forgetDecisions();
    return false;
  }
  return true;
}

bool ScriptDocuments::keepCopies() {
  bool areKept = true;
  for (const auto& document : m_documents) areKept = document->keepCopyNow() && areKept;
  return areKept;
}

void ScriptDocuments::closeAll(bool keepsCopies) {
  for (const auto& document : m_documents) {
    if (!keepsCopies) document->removeCopy();
  }
  m_documents.clear();
}

void ScriptDocuments::offerRecovered() {
  const auto onMain = m_delay.whileOwned([this](const std::shared_ptr<RecoveryCopies::Left>& left) {
    m_left = std::move(*left);
    askAboutNextCopy();
    tellUnreadableCopies();
  });
  m_platform.fileQueue.add([copies = m_copies, outbox = m_outbox, onMain] {
    outbox->post([onMain, left = std::make_shared<RecoveryCopies::Left>(copies.left())] { onMain(left); });
  });
}

void ScriptDocuments::tellUnreadableCopies() {
  if (m_left.failures.empty()) return;
  std::string reasons;
  for (const Error& failure : std::exchange(m_left.failures, {})) {
    reasons += (reasons.empty() ? "" : "\n") + failure.text();
  }
  m_platform.interface.error(ScriptTexts(m_foundation.localize).unsavedTextCantBeRead(), reasons);
}

/// As a sheet, since other questions may be asked at the start, too.
void ScriptDocuments::askAboutNextCopy() {
  if (m_left.copies.empty()) return;
  const auto copy = std::make_shared<RecoveryCopy>(std::move(m_left.copies.back()));
  m_left.copies.pop_back();
  const ScriptTexts texts(m_foundation.localize);
  m_platform.interface.beginSheet({.message = texts.unsavedTextWasKept(copy->path.filename().string()),
                                   .informativeText = texts.restoreOrDiscard(),
                                   .defaultTitle = texts.restore(),
                                   .alternateTitle = m_foundation.localize.discardChanges(),
                                   .cancelTitle = m_foundation.localize.later()},
                                  m_delay.whileOwned([this, copy](int answer) {
                                    if (answer == Interface::defaultButton) load(copy->path, *copy);
                                    if (answer == Interface::alternateButton) m_copies.remove(copy->id);
                                    askAboutNextCopy();
                                  }));
}

}  // namespace mirvel
