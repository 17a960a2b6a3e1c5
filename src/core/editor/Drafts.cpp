#include "core/editor/Drafts.h"

#include <utility>

#include "core/actions/CommentedFile.h"
#include "core/actions/JobOnDisk.h"
#include "core/catalogue/Launchd.h"
#include "core/editor/EditController.h"
#include "core/editor/EditorTexts.h"
#include "core/jobfile/RunString.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

constexpr const char* nameKey = "Name";
constexpr const char* pathKey = "Path";
constexpr const char* kindKey = "Kind";
constexpr const char* checksumKey = "FileChecksum";
constexpr const char* contentsKey = "Contents";

/// In seconds: a crash loses at most so much typing.
constexpr double pause = 1;

}  // namespace

std::optional<Drafts::Draft> Drafts::decode(const std::string& id, const propertylist::Value& value) {
  const auto* const fields = value.as<propertylist::Dictionary>();
  if (!fields) return std::nullopt;
  const auto* const name = fields->get<std::string>(nameKey);
  const auto* const path = fields->get<std::string>(pathKey);
  const auto* const number = fields->get<propertylist::Integer>(kindKey);
  const auto* const checksum = fields->get<std::string>(checksumKey);
  const auto* const contents = fields->get<propertylist::Data>(contentsKey);
  if (!name || !path || !number || !checksum || !contents) return std::nullopt;
  const auto kind = Kind::fromRawValue(static_cast<int>(number->toInt64().value_or(-1)));
  if (!kind || !kind->canBeLoaded()) return std::nullopt;
  return Draft{.id = id,
               .name = *name,
               .url = URL::file(*path),
               .kind = *kind,
               .fileChecksum = *checksum,
               .text = contents->bytes};
}

propertylist::Value Drafts::encode(const Draft& draft) {
  return propertylist::Dictionary{{nameKey, draft.name},
                                  {pathKey, draft.url.text()},
                                  {kindKey, draft.kind.rawValue()},
                                  {checksumKey, draft.fileChecksum},
                                  {contentsKey, propertylist::Data{draft.text}}};
}

Drafts::Drafts(const SessionContext& session)
    : m_session(session),
      m_store(session.foundation.roots.applicationSupport / "Drafts.plist", &session.foundation.storeTroubles),
      m_delay(session.platform.mainQueue),
      // Jobs are only published while nothing is unsaved.
      m_updated(session.notifications.jobsUpdated.subscribe([this] { (void)settle(); })),
      m_edited(session.editing.edited().subscribe([this] { edited(); })) {}

void Drafts::edited() {
  if (std::exchange(m_isDue, true)) return;
  m_delay(pause, [this] {
    m_isDue = false;
    (void)settle();
  });
}

bool Drafts::settle() {
  const auto job = m_session.selection.launchd();
  if (!m_session.editing.hasUnsavedChanges() || !job) {
    follow(nullptr);
    return true;
  }
  if (job != m_job.lock()) follow(job);
  Draft draft{.id = m_id,
              .name = job->name,
              .url = job->url,
              .kind = job->kind,
              .fileChecksum = m_session.editing.fileChecksum(),
              .text = textAsEdited(job->plist())};
  // Property lists can't contain a path that isn't valid UTF-8.
  if (draft.text.empty() || !propertylist::isUtf8(draft.url.text())) return false;
  const propertylist::Value value = encode(draft);
  const propertylist::Value* const kept = m_store.find(m_id);
  const bool isKept = (kept && *kept == value && !m_store.hasChanges()) || m_store.set(m_id, value);
  return isKept && m_session.editing.unfinished().isEmpty();
}

/// Removes the copy of the previous edit; the edit of `job`, if any, gets an ID of its own.
void Drafts::follow(const std::shared_ptr<Launchd>& job) {
  if (!m_id.empty()) forget(m_id);
  m_job = job;
  m_id = job ? makeUuid() : std::string();
}

void Drafts::forget(const std::string& id) {
  if (m_store.find(id)) (void)m_store.set(id, std::nullopt);  // the store reports what fails
}

std::vector<Drafts::Draft> Drafts::drafts() {
  std::vector<Draft> result;
  for (const auto& [id, value] : m_store.contents()) {
    auto draft = decode(id, value);
    if (draft && draft->id != m_id) result.push_back(*std::move(draft));
  }
  return result;
}

void Drafts::offer() {
  m_waiting = drafts();
  if (m_waiting.empty()) return;
  m_scanned = m_session.notifications.loadingChanged.subscribe([this] {
    if (!m_session.fetcher.hasScanned()) return;
    m_scanned = {};
    m_delay(0, [this] { askAboutNext(); });  // the jobs are published after this notification
  });
}

/// Shows the next question; the answer leads back here.
void Drafts::askAboutNext() {
  while (!m_waiting.empty() && !m_session.editing.hasUnsavedChanges()) {
    const Draft draft = std::move(m_waiting.back());
    m_waiting.pop_back();
    if (!isHeld(draft)) return ask(draft);
    forget(draft.id);
  }
}

/// Whether the file on disk is already what the edit would write.
bool Drafts::isHeld(const Draft& draft) const {
  const auto job = m_session.catalogue.jobAt(draft.url);
  return jobBytes(draft.url) == draft.text && !(job && job->kind != draft.kind);
}

void Drafts::ask(const Draft& draft) {
  const Localize& localize = m_session.foundation.localize;
  m_session.platform.interface.beginSheet({.message = EditorTexts(localize).unsavedChangesWereKept(draft.name),
                                           .informativeText = EditorTexts(localize).mirvelQuitBeforeYouSavedThem(),
                                           .defaultTitle = EditorTexts(localize).continueEditing(),
                                           .alternateTitle = localize.discardChanges(),
                                           .cancelTitle = localize.later()},
                                          m_delay.whileOwned([this, draft](int answer) {
                                            if (answer == Interface::defaultButton) return goOn(draft);
                                            if (answer == Interface::alternateButton) forget(draft.id);
                                            askAboutNext();
                                          }));
}

/// Opens the draft in the editor. The other drafts are kept for the next start.
void Drafts::goOn(const Draft& draft) {
  const auto keys = propertylist::readDictionary(draft.text);
  const auto job = m_session.catalogue.jobAt(draft.url);
  if (m_session.editing.hasUnsavedChanges()) return;
  if (!job && isPresent(draft.url)) {
    const Localize& localize = m_session.foundation.localize;
    return m_session.platform.interface.error(EditorTexts(localize).unsavedChangesWereKept(draft.name),
                                              EditorTexts(localize).theJobIsNotListed());
  }
  if (!job || !keys) return putAside(draft);
  m_session.currentMode.select(job);
  if (!replaceSelected(m_session.editing, m_session.platform.interface, m_session.foundation.localize, *keys)) return;
  m_session.editing.setFileChecksum(draft.fileChecksum);
  m_session.selection.job()->kind = draft.kind;
  if (m_session.shell.detail) m_session.shell.detail->showEdit();
  if (settle()) forget(draft.id);
}

void Drafts::putAside(const Draft& draft) {
  Interface& interface = m_session.platform.interface;
  const Localize& localize = m_session.foundation.localize;
  const Roots& roots = m_session.foundation.roots;
  if (const auto kept = keepFile(roots, m_session.platform.clock, draft.name, draft.text); !kept) {
    return interface.present(kept.error());
  }
  forget(draft.id);
  interface.error(EditorTexts(localize).unsavedChangesWereKept(draft.name),
                  EditorTexts(localize).theJobsFileIsGone(keptFilesFolder(roots).string()));
}

}  // namespace mirvel
