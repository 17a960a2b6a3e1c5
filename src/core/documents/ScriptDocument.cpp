#include "core/documents/ScriptDocument.h"

#include <utility>

#include "core/documents/ScriptTexts.h"
#include "core/process/Commands.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

constexpr std::size_t oftenCopied = std::size_t{8} << 20U;
constexpr double shortPause = 2;  ///< seconds between an edit and its recovery copy
constexpr double longPause = 20;  ///< the same for texts above `oftenCopied`

}  // namespace

ScriptDocument::ScriptDocument(const DocumentContext& context, LoadedScript script, std::filesystem::path opened)
    : m_context(context),
      m_path(std::move(script.path)),
      m_opened(std::move(opened)),
      m_text(std::move(script.text)),
      m_encoding(std::move(script.encoding)),
      m_file(std::move(script.state)),
      m_protection(script.protection),
      m_syntax(script.syntax),
      m_form(script.form),
      m_formOfFile(script.form),
      m_copyId(makeUuid()),
      m_outbox(std::make_shared<Outbox>(context.platform.mainQueue)),
      m_delay(context.platform.mainQueue) {}

ScriptDocument::~ScriptDocument() {
  m_outbox->close();
}

void ScriptDocument::show(const MakeView& make, const std::optional<RecoveryCopy>& copy) {
  if (copy) {
    m_copyId = copy->id;
    m_text = copy->text;
    m_encoding = copy->encoding;
    m_file.digest = copy->base.digest;
    if (m_file.mode == 0) m_file.mode = copy->base.mode;
    m_isUnsaved = m_hasCopy = true;
  }
  m_view = make(*this);
  fill(std::exchange(m_text, {}));
  m_view->bringToFront();
}

void ScriptDocument::fill(std::string text) {
  m_isLoading = true;
  m_size = text.size();
  changed();
  m_view->setText(std::make_shared<const std::string>(std::move(text)), m_delay.whileOwned([this] { filled(); }));
}

void ScriptDocument::filled() {
  m_isLoading = false;
  changed();
  becameIdle();
}

bool ScriptDocument::isEdited() const {
  return m_isUnsaved || (!m_isLoading && (m_isSaving || (m_view && m_view->isModified())));
}

void ScriptDocument::changed() {
  m_wasEdited = isEdited();
  if (m_view) m_view->refresh();
}

void ScriptDocument::textChanged() {
  if (m_isLoading) return;
  ++m_edits;
  if (!isEdited()) m_form = m_formOfFile;  // everything was undone
  if (isEdited() != m_wasEdited) changed();
  if (std::exchange(m_isCopyDue, true)) return;
  m_delay(m_size > oftenCopied ? longPause : shortPause, [this] {
    m_isCopyDue = false;
    keepCopy();
  });
}

void ScriptDocument::restore(const std::string& text) {
  if (!canSave()) return;
  m_view->replaceText(text);
  m_form = TextForm::of(text);
  changed();
}

void ScriptDocument::restoreCopy(const RecoveryCopy& copy) {
  if (m_isLoading) return m_whenIdle.push_back([this, copy] { restoreCopy(copy); });
  if (!canSave()) return tellWhyItCannotBeSaved();
  removeCopy();
  m_copyId = copy.id;
  m_hasCopy = true;
  restore(copy.text);
}

void ScriptDocument::setSyntax(SyntaxType syntax) {
  m_syntax = syntax;
  changed();
}

RecoveryCopy ScriptDocument::copyOfText() const {
  return {.id = m_copyId, .path = m_path, .encoding = m_encoding, .base = m_file, .text = m_view->text()};
}

/// A save that is in progress decides itself what becomes of the copy.
/// The form of the text is determined there, too, which takes a while for a large one.
void ScriptDocument::keepCopy() {
  if (m_isLoading) return;
  if (!isEdited()) {
    removeCopy();
    return changed();
  }
  m_hasCopy = true;
  const auto copy = std::make_shared<const RecoveryCopy>(copyOfText());
  const auto onMain = m_delay.whileOwned(
      [this, edits = m_edits](const Result<void>& written, const TextForm& form) { copied(written, form, edits); });
  m_context.copies.keep(copy, [onMain, copy, outbox = m_outbox](const Result<void>& written) {
    outbox->post([onMain, written, form = TextForm::of(copy->text)] { onMain(written, form); });
  });
}

void ScriptDocument::copied(const Result<void>& written, const TextForm& form, int edits) {
  if (!m_hasCopy) return;  // the text was saved, discarded or undone meanwhile
  const std::string failure = written ? std::string() : written.error().text();
  const TextForm& newForm = edits == m_edits ? form : m_form;
  if (failure == m_copyFailure && newForm == m_form) return;
  m_copyFailure = failure;
  m_form = newForm;
  changed();
}

bool ScriptDocument::keepCopyNow() {
  if (!isEdited() || m_isLoading) return true;  // what is being loaded as unsaved text has its copy
  m_hasCopy = true;
  return static_cast<bool>(m_context.copies.keepNow(copyOfText()));
}

void ScriptDocument::removeCopy() {
  m_copyFailure.clear();
  if (std::exchange(m_hasCopy, false)) m_context.copies.remove(m_copyId);
}

void ScriptDocument::setDiscarded(bool isDiscarded) {
  m_discardedEdits = isDiscarded ? m_edits : -1;
}

void ScriptDocument::whenIdle(std::function<void()> done) {
  if (!isBusy()) return done();
  m_whenIdle.push_back(std::move(done));
}

void ScriptDocument::becameIdle() {
  for (const auto& call : std::exchange(m_whenIdle, {})) call();
}

void ScriptDocument::reload(const std::optional<std::string>& encoding, bool mayDiscard) {
  if (m_isLoading || m_isSaving) return;
  const auto onMain = m_delay.whileOwned(
      [this, reload = ++m_reloads, discardable = mayDiscard ? m_edits : -1](const Result<LoadedScript>& script) {
        if (reload == m_reloads) reloaded(script, discardable);
      });
  m_context.platform.checkQueue.add(
      [path = m_path, locale = m_context.foundation.localize.locale(), encoding, outbox = m_outbox, onMain] {
        auto script = std::make_shared<const Result<LoadedScript>>(loadScript(path, locale, encoding));
        outbox->post([onMain, script] { onMain(*script); });
      });
}

/// The question comes last, so that it isn't asked for nothing, and what was typed meanwhile counts. The edit with the
/// number `discardable` may be lost.
void ScriptDocument::reloaded(const Result<LoadedScript>& script, int discardable) {
  const ScriptTexts texts(m_context.foundation.localize);
  if (!script) return reportFailure(texts.couldntOpenDocument(name()), script.error());
  if (isEdited() && discardable != m_edits && !mayBeReloaded()) return;
  m_path = script->path;
  m_encoding = script->encoding;
  m_file = script->state;
  m_protection = script->protection;
  m_syntax = script->syntax;
  m_form = m_formOfFile = script->form;
  m_isUnsaved = false;
  setDiscarded(false);
  removeCopy();
  fill(script->text);
}

bool ScriptDocument::mayBeReloaded() {
  const std::weak_ptr<Outbox> alive = m_outbox;  // the document can be closed while the question is shown
  const int reload = m_reloads;
  const ScriptTexts texts(m_context.foundation.localize);
  const int answer =
      m_context.platform.interface.alert({.message = texts.discardChanges(name()),
                                          .informativeText = texts.fileWillBeLoadedAgain(),
                                          .defaultTitle = m_context.foundation.localize.cancel(),
                                          .alternateTitle = m_context.foundation.localize.discardChanges(),
                                          .safeButton = Interface::defaultButton});
  return answer == Interface::alternateButton && !alive.expired() && reload == m_reloads;
}

void ScriptDocument::setExecutable(bool isExecutable) {
  const auto onMain = m_delay.whileOwned([this](const Result<FileState>& state) {
    if (state) {
      m_file.mode = state->mode;
    } else {
      m_context.platform.interface.present(state.error());
    }
    changed();
  });
  m_context.platform.fileQueue.add([path = m_path, isExecutable, outbox = m_outbox, onMain] {
    outbox->post([onMain, state = mirvel::setExecutable(path, isExecutable)] { onMain(state); });
  });
}

void ScriptDocument::convertLineEnds(LineEnd lineEnd) {
  if (!canSave()) return;
  restore(withLineEnds(m_view->text(), lineEnd));
}

std::string ScriptDocument::notice() const {
  const ScriptTexts texts(m_context.foundation.localize);
  if (!m_copyFailure.empty()) return texts.unsavedTextIsntKept(m_copyFailure);
  if (m_protection == Protection::NotWritable) return texts.isNotWritable();
  if (m_protection == Protection::UnknownEncoding) return texts.hasUnknownEncoding();
  if (m_form.hasUnusableInterpreter) return texts.interpreterEndsWithReturn();
  return isLarge() ? texts.largeTextIsPlain() : std::string();
}

bool ScriptDocument::canCheckSyntax() const {
  return !m_isLoading && SyntaxCheck::of(m_syntax, {}, m_context.foundation.commands).has_value();
}

void ScriptDocument::checkSyntax(const std::function<void(const std::optional<SyntaxProblem>&)>& done) {
  if (m_isLoading) return;
  const std::string text = m_view->text();
  const auto check = SyntaxCheck::of(m_syntax, text, m_context.foundation.commands);
  if (!check) return;
  const auto encoded = encode(text, m_encoding);
  const bool isEncoded = encoded && !encoded->firstUnencodable;
  auto bytes = std::make_shared<const std::string>(isEncoded ? encoded->bytes : text);
  using Answer = Result<std::optional<SyntaxProblem>>;
  const auto onMain = m_delay.whileOwned([this, done](const Answer& answer) {
    if (answer) return done(*answer);
    reportFailure(ScriptTexts(m_context.foundation.localize).checkFailed(), answer.error());
  });
  m_context.platform.fetchQueue.add(
      [check = *check, bytes, folder = m_context.foundation.roots.applicationSupport / "Scripts",
       &runner = m_context.platform.processRunner, outbox = m_outbox,
       onMain] { outbox->post([onMain, answer = check.run(*bytes, folder, runner)] { onMain(answer); }); });
}

void ScriptDocument::reportFailure(const std::string& message, const Error& error) {
  m_context.platform.interface.error(message, error.text());
}

}  // namespace mirvel
