#include "core/session/Editing.h"

#include <utility>

#include "core/catalogue/JobFile.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/files/ReadFile.h"
#include "core/ports/Clock.h"
#include "core/session/Busy.h"
#include "core/session/Foundation.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

Editing::Editing(const Selection& selection, Shell& shell, const Busy& saving, const Foundation& foundation,
                 const Clock& clock, Console& console)
    : m_selection(selection),
      m_shell(shell),
      m_saving(saving),
      m_foundation(foundation),
      m_clock(clock),
      m_console(console) {}

std::shared_ptr<Launchd> Editing::selected() const {
  return m_selection.launchd();
}

/// The checksum of the content from which the job was read, or which a save has written since.
std::string Editing::checksumLastSeen(const std::shared_ptr<Launchd>& job) const {
  if (job == m_writtenJob.lock()) return m_writtenChecksum;
  return job->isToBeReadAgain() ? std::string() : job->checksum.text();
}

/// If the job is waiting to be read again, the current content of the file counts as seen; only later changes are those
/// of other programs.
std::string Editing::checksumAtStart(const std::shared_ptr<Launchd>& job) const {
  std::string seen = checksumLastSeen(job);
  if (!seen.empty()) return seen;
  const auto bytes = readFile(job->url.path(), JobFolder::largestFile);
  return bytes ? Checksum::ofFile(*bytes).text() : std::string();
}

void Editing::setUnsavedChanges(bool hasUnsavedChanges) {
  if (std::exchange(m_hasUnsavedChanges, hasUnsavedChanges) != hasUnsavedChanges) m_edited.post();
}

bool Editing::isAbout(const std::shared_ptr<Launchd>& job) const {
  return job && job == m_job.lock();
}

Launchd* Editing::markJobChanged(Step step, std::string_view field) {
  const auto job = selected();
  if (!job) return nullptr;
  if (!isAbout(job) || (!m_hasUnsavedChanges && m_undone.empty())) began(job, checksumAtStart(job));
  if (!continuesStep(step, field)) {
    if (m_done.empty()) m_wasChanged = m_hasUnsavedChanges;
    m_done.push_back({.record = job->plist().clone(), .kind = job->kind, .unfinished = m_unfinished});
    dropOldSteps();
  }
  m_undone.clear();
  m_hasUnsavedChanges = true;
  m_edited.post();
  if (m_shell.edit) m_shell.edit->refreshEditedState();
  return job.get();
}

Result<void> Editing::replaceRecord(const std::string& text) {
  auto record = jobfile::Plist::readTolerantly(text);
  if (!record) return record.error();
  Launchd* const job = markJobChanged();
  if (!job) return Error{.code = Error::Code::NotFound, .message = "no job is selected"};
  job->plist() = *std::move(record);
  m_unfinished = {};
  return {};
}

void Editing::dropOldSteps() {
  constexpr std::size_t mostSteps = 1000;
  if (m_done.size() <= mostSteps) return;
  m_done.erase(m_done.begin());
  m_wasChanged = true;  // undoing the remaining steps doesn't lead back to what was read
}

bool Editing::continuesStep(Step step, std::string_view field) {
  constexpr double pause = 2;
  const double now = m_clock.secondsSince1970();
  const bool isSoon = !m_done.empty() && m_undone.empty() && now - m_lastChange < pause;
  const bool continues = step == Step::Continues && isSoon && field == m_field;
  m_field = step == Step::Continues ? field : std::string_view();
  m_lastChange = now;
  return continues && !field.empty();
}

Unfinished& Editing::unfinished() {
  if (!isAbout(selected())) m_unfinished = {};
  return m_unfinished;
}

bool Editing::canUndo() const {
  return isAbout(selected()) && !m_done.empty() && !m_saving.isBusy();
}

bool Editing::canRedo() const {
  return isAbout(selected()) && !m_undone.empty() && !m_saving.isBusy();
}

void Editing::undo() {
  if (canUndo()) swap(m_done, m_undone);
}

void Editing::redo() {
  if (canRedo()) swap(m_undone, m_done);
}

void Editing::swap(std::vector<State>& from, std::vector<State>& to) {
  const auto job = selected();
  to.push_back({.record = std::move(job->plist()), .kind = job->kind, .unfinished = std::move(m_unfinished)});
  job->plist() = std::move(from.back().record);
  job->kind = from.back().kind;
  m_unfinished = std::move(from.back().unfinished);
  from.pop_back();
  m_field.clear();
  m_hasUnsavedChanges = !m_done.empty() || m_wasChanged;
  m_edited.post();
  if (m_shell.detail) m_shell.detail->showEdit();
  if (m_shell.edit) m_shell.edit->refreshEditedState();
  if (m_hasUnsavedChanges) return;
  // A failed save may have written the file, so the record isn't necessarily what the file contains.
  if (!m_sentChecksum.empty()) job->readAgain();
  m_reverted.post();
}

void Editing::reset() {
  m_job.reset();
  m_unfinished = {};
  m_done.clear();
  m_undone.clear();
  m_field.clear();
}

void Editing::began(const std::shared_ptr<Launchd>& job, std::string fileChecksum) {
  reset();
  m_job = job;
  m_fileChecksum = std::move(fileChecksum);
  m_sentChecksum.clear();
  m_agreedChecksum.clear();
}

std::string Editing::fileChecksum() const {
  const auto job = selected();
  if (!job) return {};
  return isAbout(job) ? m_fileChecksum : checksumLastSeen(job);
}

bool Editing::expectsInFile(const std::string& checksum) const {
  const std::string read = fileChecksum();
  return read.empty() || read == checksum || (isAbout(selected()) && m_sentChecksum == checksum);
}

void Editing::sent(const std::shared_ptr<Launchd>& job, const std::string& text) {
  if (!job || job != selected()) return;
  if (!isAbout(job)) began(job, checksumLastSeen(job));
  m_sentChecksum = Checksum::ofFile(text).text();
}

bool Editing::take(const std::shared_ptr<Launchd>& job, const std::string& text) {
  ScanSettings settings = m_foundation.scanSettings();
  settings.showInternalHelpers = true;  // a job that scans leave out is one all the same
  const auto read = Launchd::read(text, job->url, job->kind, settings, m_console);
  if (!read) return false;
  job->plist() = std::move(read->plist());
  m_writtenJob = job;
  m_writtenChecksum = Checksum::ofFile(text).text();
  return true;
}

void Editing::restore(const std::shared_ptr<Launchd>& job) {
  if (isAbout(job) && !m_done.empty()) job->plist() = m_done.front().record.clone();
}

void Editing::agreed(const std::shared_ptr<Launchd>& job, std::string checksum) {
  if (!isAbout(job)) began(job, checksumLastSeen(job));
  m_agreedChecksum = std::move(checksum);
}

bool Editing::hasAgreed(const std::shared_ptr<Launchd>& job, const std::string& checksum) const {
  return isAbout(job) && m_agreedChecksum == checksum;
}

void Editing::setFileChecksum(std::string checksum) {
  const auto job = selected();
  if (!isAbout(job)) began(job, {});
  m_fileChecksum = std::move(checksum);
}

}  // namespace mirvel
