#include "core/session/Editing.h"

#include "core/app/Program.h"
#include "core/catalogue/JobFile.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/files/ReadFile.h"

namespace mirvel {

std::shared_ptr<Launchd> Editing::selected() const {
  return m_program.selection.launchd();
}

/// Of the last bytes in its file that are the job's: those that it was read from, or that a save has written since.
std::string Editing::checksumLastSeen(const std::shared_ptr<Launchd>& job) const {
  if (job == m_writtenJob.lock()) return m_writtenChecksum;
  return job->isToBeReadAgain() ? std::string() : job->checksum;
}

/// Of a job that is still to be read again the file counts as it is now: what changes from here on is another's doing.
std::string Editing::checksumAtStart(const std::shared_ptr<Launchd>& job) const {
  std::string seen = checksumLastSeen(job);
  if (!seen.empty()) return seen;
  const auto bytes = readFile(job->url.path(), JobFolder::largestFile);
  return bytes ? JobFile::checksumOf(*bytes) : std::string();
}

bool Editing::isAbout(const std::shared_ptr<Launchd>& job) const {
  return job && job == m_job.lock();
}

Launchd* Editing::markJobChanged(std::string_view field) {
  const auto job = selected();
  if (!job) return nullptr;
  if (!isAbout(job) || (!m_hasUnsavedChanges && m_undone.empty())) began(job, checksumAtStart(job));
  if (!continuesStep(field)) {
    if (m_done.empty()) m_wasChanged = m_hasUnsavedChanges;
    m_done.push_back({.record = job->plist().clone(), .kind = job->kind, .unfinished = m_unfinished});
    dropOldSteps();
  }
  m_undone.clear();
  m_hasUnsavedChanges = true;
  m_program.drafts.edited();
  if (EditType* const edit = m_program.shell.edit) edit->refreshEditedState();
  return job.get();
}

void Editing::dropOldSteps() {
  constexpr std::size_t mostSteps = 1000;
  if (m_done.size() <= mostSteps) return;
  m_done.erase(m_done.begin());
  m_wasChanged = true;  // undoing all that is left isn't back to what was read
}

bool Editing::continuesStep(std::string_view field) {
  constexpr double pause = 2;
  const double now = m_program.platform.clock.secondsSince1970();
  const bool continues =
      !field.empty() && field == m_field && !m_done.empty() && m_undone.empty() && now - m_lastChange < pause;
  m_field = field;
  m_lastChange = now;
  return continues;
}

Unfinished& Editing::unfinished() {
  if (!isAbout(selected())) m_unfinished = {};
  return m_unfinished;
}

bool Editing::canUndo() const {
  return isAbout(selected()) && !m_done.empty() && !m_program.saving.isBusy();
}

bool Editing::canRedo() const {
  return isAbout(selected()) && !m_undone.empty() && !m_program.saving.isBusy();
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
  m_program.drafts.edited();
  const Shell& shell = m_program.shell;
  if (shell.detail) shell.detail->showEdit();
  if (shell.edit) shell.edit->refreshEditedState();
  if (m_hasUnsavedChanges) return;
  // A save that failed may have written its file all the same.
  if (!m_sentChecksum.empty()) job->readAgain();
  m_program.fetcher.refresh();
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
  m_sentChecksum = JobFile::checksumOf(text);
}

bool Editing::take(const std::shared_ptr<Launchd>& job, const std::string& text) {
  const auto read =
      Launchd::read(text, job->url, job->kind, m_program.foundation.scanSettings(), m_program.platform.console);
  if (!read) return false;
  job->plist() = std::move(read->plist());
  m_writtenJob = job;
  m_writtenChecksum = JobFile::checksumOf(text);
  return true;
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
