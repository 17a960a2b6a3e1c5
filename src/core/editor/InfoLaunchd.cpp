#include "core/editor/InfoLaunchd.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "core/actions/JobOnDisk.h"
#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/editor/GeneralRules.h"
#include "core/editor/InfoTexts.h"
#include "core/jobfile/RunString.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Reader.h"
#include "core/session/Busy.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

namespace {

using jobfile::Plist;
using propertylist::Position;
using propertylist::Positions;
using Problem = InfoLaunchd::Problem;

/// A byte-order mark makes the reader take the text for what it is: UTF-8, whatever encoding it declares.
std::string asUtf8(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  return std::string(text.starts_with(mark) ? std::string_view() : mark).append(text);
}

std::size_t pointOf(std::string_view text, const Position& position) {
  std::size_t start = 0;
  for (std::size_t line = 1; line < position.line; ++line) {
    const std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) break;
    start = end + 1;
  }
  return std::min(start + (position.column > 0 ? position.column - 1 : 0), text.size());
}

/// `position` can be that of the white space before the cause.
Problem problemAt(std::string_view text, const Position& position, const std::string& reason,
                  const Localize& localize) {
  if (position.line == 0) return {.reason = reason};
  std::size_t point = pointOf(text, position);
  const std::size_t cause = text.find_first_not_of(" \t\r\n", point);
  if (cause != std::string_view::npos) point = cause;
  const auto line = static_cast<std::int64_t>(propertylist::positionOf(text, point).line);
  return {.reason = InfoTexts(localize).line(localize.int_(line), reason), .point = point};
}

/// Why a well-formed list isn't a job.
std::string reasonFor(const Error& error, const Localize& localize) {
  const InfoTexts texts(localize);
  if (error.code == Error::Code::MissingKey) return texts.labelIsMissing();
  if (error.code != Error::Code::WrongType) return error.message;
  return error.keyPath.empty() ? texts.theRootIsntADictionary() : texts.labelIsntText();
}

/// The values that no field of the record represents: known keys with values of a wrong type, and below known keys also
/// unknown ones. launchd knows some of these.
std::vector<std::string> unusedKeys(const Plist& record) {
  std::vector<std::string> result;
  for (const std::string& key : record.unknownKeys.value_or(std::vector<std::string>())) {
    if (Plist::codingKey(key)) result.push_back(key);
  }
  for (const auto& value : record.opaqueValues()) result.push_back(value.text());
  return result;
}

std::string joined(const std::vector<std::string>& keys) {
  constexpr std::size_t most = 8;
  std::string result;
  for (std::size_t i = 0; i < std::min(keys.size(), most); ++i) result += (i > 0 ? ", " : "") + keys[i];
  return keys.size() > most ? result + " …" : result;
}

/// The input whose keys have the same values in both lists. Input that isn't named after a key of files belongs to a
/// condition of `KeepAlive`.
Unfinished inputOfSameValues(Unfinished input, const propertylist::Dictionary& before,
                             const propertylist::Dictionary& after) {
  const auto isSame = [&](std::string_view key) {
    const auto* const old = before.find(key);
    const auto* const current = after.find(key);
    return old && current ? *old == *current : old == current;
  };
  const auto hasChanged = [&](const auto& entry) {
    return !isSame(Plist::codingKey(entry.first) ? std::string_view(entry.first) : "KeepAlive");
  };
  std::erase_if(input.texts, hasChanged);
  std::erase_if(input.tables, hasChanged);
  std::erase_if(input.trees, hasChanged);
  if (!isSame("StartInterval") || !isSame("StartCalendarInterval")) input.rules.clear();
  return input;
}

bool isSameFile(const Launchd& a, const Launchd& b) {
  return !a.isNewFile && !b.isNewFile && a.url.equalTo(b.url);  // the URL of a new job can be that of its original
}

}  // namespace

InfoLaunchd::InfoLaunchd(const SessionContext& session, const Busy& saving, const CommandRepairs& repairs,
                         std::shared_ptr<Launchd> job)
    : m_session(session),
      m_saving(saving),
      m_job(std::move(job)),
      m_isEditable(m_job->kind.isEditable(session.foundation.defaults.editSystemJobs())),
      m_text(shownText(repairs)),
      m_fileChecksum(session.editing.fileChecksum()),
      m_fileHasComments(!m_job->isNewFile && propertylist::hasComments(jobBytes(m_job->url).value_or(""))) {}

std::string InfoLaunchd::shownText(const CommandRepairs& repairs) const {
  const bool isAsInFile = !m_isEditable && !m_session.editing.hasUnsavedChanges();
  if (isAsInFile && !m_job->textContent.view().empty()) return std::string(m_job->textContent.view());
  Plist saved = m_job->plist().clone();
  saved.run = GeneralRules::command(saved.run, saved, repairs);
  return jobfile::textAsEdited(saved);
}

std::string InfoLaunchd::title() const {
  const Localize& localize = m_session.foundation.localize;
  return bidirectionalString({InfoTexts(localize).info(), m_job->name}, Const::separator, localize.isRightToLeft());
}

std::vector<std::string> InfoLaunchd::notices(const std::string& text) const {
  const InfoTexts texts(m_session.foundation.localize);
  if (m_text.empty()) return {texts.textCantBeShown()};
  if (!m_isEditable) return {texts.thisJobCantBeEdited()};
  std::vector<std::string> result;
  if (propertylist::hasComments(asUtf8(text))) {
    result.push_back(texts.commentsWontBeSaved());
  } else if (m_fileHasComments) {
    result.push_back(texts.commentsInTheFileArentShown());
  }
  if (const auto record = Plist::readTolerantly(asUtf8(text))) {
    const auto keys = unusedKeys(*record);
    if (!keys.empty()) result.push_back(texts.keptAsTyped(joined(keys)));
  }
  if (!m_session.editing.unfinished().isEmpty()) result.push_back(texts.somethingInvalidIsntInTheText());
  return result;
}

std::optional<Problem> InfoLaunchd::check(const std::string& text, const Localize& localize) {
  Positions positions;
  const auto document = propertylist::read(asUtf8(text), &positions);
  if (!document) {
    const Error& error = document.error();
    return problemAt(text, {.line = error.line, .column = error.column}, error.message, localize);
  }
  // Whatever the reader warns about, such as a repeated key, wouldn't be saved as it was typed.
  if (!document->warnings().empty()) {
    const auto& warning = document->warnings().front();
    return problemAt(text, {.line = warning.line, .column = warning.column}, warning.message, localize);
  }
  Plist record;
  const auto decoded = Plist::decodeTolerantly(document->root(), record);
  if (decoded) return std::nullopt;
  auto location = positions.find(decoded.error().keyPath);
  if (!location) location = positions.find("");  // of a missing key, the whole list
  return problemAt(text, location ? location->value : Position(), reasonFor(decoded.error(), localize), localize);
}

/// The selected job if it is this one, even if a scan has replaced its object; null otherwise.
std::shared_ptr<Launchd> InfoLaunchd::selectedJob() const {
  auto selected = m_session.selection.launchd();
  const bool isThis = selected && (selected == m_job || isSameFile(*selected, *m_job));
  return isThis ? std::move(selected) : nullptr;
}

std::optional<Problem> InfoLaunchd::refusal() const {
  const InfoTexts texts(m_session.foundation.localize);
  if (!isEditable()) return Problem{.reason = texts.thisJobCantBeEdited()};
  if (m_saving.isBusy()) return Problem{.reason = texts.theJobIsBeingSaved()};
  if (!selectedJob()) return Problem{.reason = texts.theJobIsntSelected(m_job->name)};
  return std::nullopt;
}

std::optional<Problem> InfoLaunchd::change(const std::string& text) {
  if (text == m_text) return std::nullopt;
  if (auto problem = refusal()) return problem;
  if (auto problem = check(text, m_session.foundation.localize)) return problem;
  const auto job = selectedJob();
  Editing& editing = m_session.editing;
  Unfinished input = editing.unfinished();
  const propertylist::Dictionary before = job->plist().encodeAll();
  if (const auto replaced = editing.replaceRecord(asUtf8(text)); !replaced) {
    return Problem{.reason = replaced.error().message};
  }
  editing.unfinished() = inputOfSameValues(std::move(input), before, job->plist().encodeAll());
  if (job != m_job && !m_fileChecksum.empty()) editing.setFileChecksum(m_fileChecksum);
  if (m_session.shell.detail) m_session.shell.detail->showEdit();
  return std::nullopt;
}

bool InfoLaunchd::mayClose(const std::string& text) const {
  if (text == m_text) return true;
  const Localize& localize = m_session.foundation.localize;
  const int answer = m_session.platform.interface.alert({
      .message = InfoTexts(localize).discardChangesToTheText(),
      .informativeText = InfoTexts(localize).theTextIsOnlyInThisSheet(),
      .defaultTitle = localize.discardChanges(),
      .alternateTitle = localize.cancel(),
      .safeButton = Interface::alternateButton,
  });
  return answer == Interface::defaultButton;
}

}  // namespace mirvel
