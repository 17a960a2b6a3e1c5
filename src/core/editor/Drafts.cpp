#include "core/editor/Drafts.h"

#include <utility>

#include "core/actions/CommentedFile.h"
#include "core/actions/JobOnDisk.h"
#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/commands/TextAsEdited.h"
#include "core/editor/ReplaceSelected.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

constexpr const char* nameKey = "Name";
constexpr const char* pathKey = "Path";
constexpr const char* kindKey = "Kind";
constexpr const char* checksumKey = "FileChecksum";
constexpr const char* contentsKey = "Contents";

/// In seconds. Long enough for a word to be typed, short enough for what a crash may take.
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
  if (!kind || !kind->isLaunchd()) return std::nullopt;
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

Drafts::Drafts(Program& program)
    : m_program(program),
      m_store(program.foundation.roots.applicationSupport / "Drafts.plist", &program.foundation.storeTroubles),
      m_delay(program.platform.mainQueue),
      // Jobs are only published while nothing is unsaved.
      m_updated(program.notifications.jobsUpdated.subscribe([this] { (void)settle(); })) {}

void Drafts::edited() {
  if (std::exchange(m_isDue, true)) return;
  m_delay(pause, [this] {
    m_isDue = false;
    (void)settle();
  });
}

bool Drafts::settle() {
  const auto job = m_program.selection.launchd();
  if (!m_program.editing.hasUnsavedChanges() || !job) {
    follow(nullptr);
    return true;
  }
  if (job != m_job.lock()) follow(job);
  Draft draft{.id = m_id,
              .name = job->name,
              .url = job->url,
              .kind = job->kind,
              .fileChecksum = m_program.editing.fileChecksum(),
              .text = textAsEdited(job->plist())};
  // A path that is no text has no place in a property list.
  if (draft.text.empty() || !propertylist::isUtf8(draft.url.text())) return false;
  const propertylist::Value value = encode(draft);
  const propertylist::Value* const kept = m_store.find(m_id);
  const bool isKept = (kept && *kept == value && !m_store.hasChanges()) || m_store.set(m_id, value);
  return isKept && m_program.editing.unfinished().isEmpty();
}

/// Another edit begins, or none.
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
  m_scanned = m_program.notifications.loadingChanged.subscribe([this] {
    if (!m_program.fetcher.hasScanned()) return;
    m_scanned = {};
    m_delay(0, [this] { askAboutNext(); });  // when they are published
  });
}

/// One after another. What is edited by now, or kept of a job that holds it, isn't asked about.
void Drafts::askAboutNext() {
  while (!m_waiting.empty() && !m_program.editing.hasUnsavedChanges()) {
    const Draft draft = std::move(m_waiting.back());
    m_waiting.pop_back();
    if (!isHeld(draft)) return ask(draft);
    forget(draft.id);
  }
}

/// Whether the job's file is as the edit would have it.
bool Drafts::isHeld(const Draft& draft) const {
  const auto job = m_program.catalogue.jobAt(draft.url);
  return jobBytes(draft.url) == draft.text && !(job && job->kind != draft.kind);
}

void Drafts::ask(const Draft& draft) {
  const Localize& localize = m_program.foundation.localize;
  m_program.platform.interface.beginSheet({.message = localize.unsavedChangesWereKept(draft.name),
                                           .informativeText = localize.mirvelEndedBeforeYouSavedThem(),
                                           .defaultTitle = localize.continueEditing(),
                                           .alternateTitle = localize.discardChanges(),
                                           .cancelTitle = localize.later()},
                                          m_delay.whileOwned([this, draft](int answer) {
                                            if (answer == Interface::defaultButton) return goOn(draft);
                                            if (answer == Interface::alternateButton) forget(draft.id);
                                            askAboutNext();
                                          }));
}

/// The others wait for the next start.
void Drafts::goOn(const Draft& draft) {
  const auto keys = propertylist::readDictionary(draft.text);
  const auto job = m_program.catalogue.jobAt(draft.url);
  if (m_program.editing.hasUnsavedChanges()) return;
  if (!job && stands(draft.url)) {
    const Localize& localize = m_program.foundation.localize;
    return m_program.platform.interface.error(localize.unsavedChangesWereKept(draft.name), localize.theJobIsNotShown());
  }
  if (!job || !keys) return putAside(draft);
  m_program.currentMode.select(job);
  if (!replaceSelected(m_program, *keys)) return;
  m_program.editing.setFileChecksum(draft.fileChecksum);
  m_program.selection.job()->kind = draft.kind;
  if (m_program.shell.detail) m_program.shell.detail->showEdit();
  if (settle()) forget(draft.id);
}

void Drafts::putAside(const Draft& draft) {
  Interface& interface = m_program.platform.interface;
  const Localize& localize = m_program.foundation.localize;
  if (const auto kept = keepFile(m_program.foundation.roots, m_program.platform.clock, draft.name, draft.text); !kept)
    return interface.present(kept.error());
  forget(draft.id);
  interface.error(localize.unsavedChangesWereKept(draft.name),
                  localize.theJobIsGone(keptFilesFolder(m_program.foundation.roots).string()));
}

}  // namespace mirvel
