#include <utility>

#include "core/documents/ScriptDocument.h"
#include "core/documents/ScriptTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

/// A save from the command to its end, with all questions.
struct ScriptDocument::Attempt {
  ScriptWrite request;
  Done done;
  bool isImmediate = false;  ///< on the main thread
  bool isSaved = false;
  bool loadsFile = false;  ///< the user prefers what another program has written
};

namespace {

std::string listed(const std::vector<pid_t>& processes) {
  std::string result;
  for (const pid_t process : processes) result += (result.empty() ? "" : ", ") + std::to_string(process);
  return result;
}

std::string reasonText(OverwriteReason reason, const ScriptTexts& texts) {
  switch (reason) {
    case OverwriteReason::Links:
      return texts.hasLinks();
    case OverwriteReason::Permissions:
      return texts.hasOtherOwner();
    case OverwriteReason::Folder:
      return texts.hasFixedFolder();
  }
  return {};
}

}  // namespace

void ScriptDocument::save(Done done) {
  if (m_isSaving) {
    m_nextSave.push_back(std::move(done));
    return;
  }
  if (!canSave()) {
    tellWhyItCannotBeSaved();
    if (done) done(false);
    return;
  }
  run(beginSave(m_encoding, std::move(done)));
}

void ScriptDocument::tellWhyItCannotBeSaved() {
  const ScriptTexts texts(m_context.foundation.localize);
  const std::string reason = m_isLoading ? texts.loading() : notice();
  m_context.platform.interface.error(texts.couldntSaveDocument(name()), reason);
}

bool ScriptDocument::saveNow() {
  if (!canSave()) tellWhyItCannotBeSaved();
  if (m_isSaving || !canSave()) return false;
  const auto attempt = beginSave(m_encoding, {});
  attempt->isImmediate = true;
  run(attempt);
  return attempt->isSaved;
}

void ScriptDocument::saveWith(const TextEncoding& encoding) {
  if (m_isSaving || !canSave()) return;
  run(beginSave(encoding, {}));
}

void ScriptDocument::beforeRun(const std::function<void()>& start) {
  if (!isEdited()) return start();
  const Localize& localize = m_context.foundation.localize;
  const ScriptTexts texts(localize);
  const int answer = m_context.platform.interface.alert({.message = texts.runsSavedText(name()),
                                                         .defaultTitle = texts.saveAndRun(),
                                                         .alternateTitle = localize.cancel()});
  if (answer != Interface::defaultButton) return;
  save([start](bool isSaved) {
    if (isSaved) start();
  });
}

/// From here on, what is typed counts as modified again, so that it stays unsaved.
std::shared_ptr<ScriptDocument::Attempt> ScriptDocument::beginSave(const TextEncoding& encoding, Done done) {
  auto attempt = std::make_shared<Attempt>();
  attempt->done = std::move(done);
  attempt->request = {.path = m_path,
                      .text = std::make_shared<const std::string>(m_view->text()),
                      .encoding = encoding,
                      .expected = m_file};
  m_isUnsaved = isEdited();
  m_isSaving = true;
  ++m_reloads;
  m_view->setModified(false);
  changed();
  return attempt;
}

void ScriptDocument::run(const std::shared_ptr<Attempt>& attempt) {
  if (attempt->isImmediate) return finish(attempt, writeScript(attempt->request));
  m_context.platform.fileQueue.add(
      [request = attempt->request, outbox = m_outbox,
       onMain = m_delay.whileOwned([this, attempt](const ScriptWritten& outcome) { finish(attempt, outcome); })] {
        outbox->post([onMain, outcome = writeScript(request)] { onMain(outcome); });
      });
}

void ScriptDocument::finish(const std::shared_ptr<Attempt>& attempt, const ScriptWritten& outcome) {
  if (outcome.kind == ScriptWritten::Kind::Written) {
    Interface& interface = m_context.platform.interface;  // the document can be closed when the save ends
    written(*attempt, outcome);
    endSave(attempt, true);
    if (outcome.error) interface.present(*outcome.error);
    return;
  }
  const std::weak_ptr<Outbox> alive = m_outbox;  // the document can be closed while the question is shown
  const bool goesOn = answer(*attempt, outcome);
  if (alive.expired()) return;
  if (goesOn) return run(attempt);
  endSave(attempt, false);
}

/// Tells or asks what stands in the way. Returns whether to try again.
bool ScriptDocument::answer(Attempt& attempt, const ScriptWritten& outcome) {
  const Localize& localize = m_context.foundation.localize;
  const ScriptTexts texts(localize);
  Interface& interface = m_context.platform.interface;
  const auto confirms = [&](const std::string& message, const std::string& information, const std::string& title) {
    return interface.alert({.message = message,
                            .informativeText = information,
                            .defaultTitle = localize.cancel(),
                            .alternateTitle = title,
                            .safeButton = Interface::defaultButton}) == Interface::alternateButton;
  };
  switch (outcome.kind) {
    case ScriptWritten::Kind::Unencodable: {
      const auto& [line, character] = outcome.unencodable;
      const auto encoding = std::exchange(attempt.request.encoding, {});
      return confirms(
          texts.characterIsNotInEncoding(character, static_cast<std::int64_t>(line), titleOf(encoding, localize)),
          texts.saveInUtf8Instead(), texts.saveAsUtf8());
    }
    case ScriptWritten::Kind::Changed: {
      attempt.request.expected = outcome.state;
      if (outcome.state.digest.empty()) {
        return confirms(texts.fileIsGone(name()), texts.saveItAgainAt(m_path.string()), texts.create());
      }
      const int answer = interface.alert({.message = texts.anotherProgramChanged(name()),
                                          .informativeText = texts.savingWouldOverwriteThoseChanges(),
                                          .defaultTitle = localize.cancel(),
                                          .alternateTitle = texts.saveAnyway(),
                                          .otherTitle = texts.loadFile(),
                                          .safeButton = Interface::defaultButton});
      attempt.loadsFile = answer == Interface::otherButton;
      return answer == Interface::alternateButton;
    }
    case ScriptWritten::Kind::Overwrites:
      attempt.request.mayOverwrite = true;
      return confirms(texts.onlyOverwritingKeeps(name()), reasonText(outcome.reason, texts), texts.overwrite());
    case ScriptWritten::Kind::InUse:
      interface.error(texts.couldntSaveDocument(name()), texts.isInUse(listed(outcome.processes)));
      return false;
    default:
      if (outcome.error) reportFailure(texts.couldntSaveDocument(name()), *outcome.error);
      return false;
  }
}

void ScriptDocument::written(const Attempt& attempt, const ScriptWritten& outcome) {
  m_file = outcome.state;
  m_encoding = attempt.request.encoding;
  m_isUnsaved = false;
  m_size = attempt.request.text->size();
  m_form = m_formOfFile = outcome.form;
  m_context.revisions.add(m_path, *attempt.request.text);
}

void ScriptDocument::endSave(const std::shared_ptr<Attempt>& attempt, bool isSaved) {
  m_isSaving = false;
  attempt->isSaved = isSaved;
  if (isSaved && !isEdited()) removeCopy();
  if (isSaved && isEdited()) keepCopy();
  changed();
  if (attempt->loadsFile) reload({}, true);
  const auto next = std::exchange(m_nextSave, {});
  const std::weak_ptr<Outbox> alive = m_outbox;
  if (attempt->done) attempt->done(isSaved);
  if (!alive.expired()) becameIdle();
  if (alive.expired() || next.empty()) return;
  save([next](bool isSavedToo) {
    for (const Done& done : next) {
      if (done) done(isSavedToo);
    }
  });
}

}  // namespace mirvel
