#include <system_error>

#include "core/actions/ActionController.h"
#include "core/actions/MoveTarget.h"
#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"

namespace mirvel {

namespace {

namespace fs = std::filesystem;

bool isThere(const URL& url) {
  std::error_code failure;
  return fs::exists(url.path(), failure);
}

}  // namespace

void ActionController::save(Launchd& job, const Ended& ended) {
  if (!job.isNewFile && !canBeNamed(job.url)) {
    if (ended) ended(false);
    return;
  }
  if (!job.plist().normalizeForSave(m_program.repairs)) {
    if (ended) ended(false);
    return;
  }
  setBusy(true);
  if (job.isNewFile) {
    if (auto url = newFileURL(job.kind, job.name, m_program.foundation.roots)) {
      job.url = *std::move(url);
      job.updateCustomIconDigest();
    }
  }
  const std::optional<std::string> text = job.plistData();
  const auto written = job.kind == Kind::userAgent ? saveAsUser(job, text, ended) : saveAsRoot(job, text, ended);
  if (ended && (!written || !written->isSent)) ended(false);
  if (!written || !written->isSent) setBusy(false);
  if (!written) return;
  job.url = written->url;
  job.updateCustomIconDigest();
  // The bytes of a job that only moved are the same, but it must be read again: its kind isn't what it was.
  if (job.kind != job.originalKind) job.checksum.clear();
  if (written->isSent) m_program.revisions.saveRevision(job);
}

std::optional<ActionController::Written> ActionController::saveAsUser(const Launchd& job,
                                                                      const std::optional<std::string>& text,
                                                                      const Ended& ended) {
  URL url = job.url;
  if (job.originalKind != Kind::userAgent) {
    leaveKind(job);
    auto target = moveTarget(Kind::userAgent, url, m_program.foundation.roots);
    if (!target) {
      m_program.platform.interface.saveError();
      return std::nullopt;
    }
    url = *std::move(target);
  }
  const auto action = Action::write(url, text, job.name);
  action->ended = ended;
  if (!job.isDisabled()) action->kind = Action::Kind::writeAndLoad;
  const bool isSent = send(action);
  return Written{.url = std::move(url), .isSent = isSent};
}

/// Takes the job out of the folder that only root may write.
void ActionController::leaveKind(const Launchd& job) {
  if (job.originalKind == Kind::localAgent) (void)send(Action::unload(job.name, job.url));
  URL old = job.url;
  const auto folder = job.originalKind.folderURL(m_program.foundation.roots);
  if (!isThere(old) && folder) old = URL::file(*folder / (job.name + ".plist"));
  (void)sendPrivileged(Action::delete_(std::move(old), job.name));
}

std::optional<ActionController::Written> ActionController::saveAsRoot(const Launchd& job,
                                                                      const std::optional<std::string>& text,
                                                                      const Ended& ended) {
  URL url = job.url;
  const bool isAgent = job.kind == Kind::localAgent;
  if ((isAgent || job.originalKind == Kind::userAgent) && isThere(url)) {
    (void)send(Action::unload(std::nullopt, url));
    m_program.platform.mainQueue.sleep(0.3);  // a head start for the other helper
  }
  const auto action = Action::write(url, text, job.name);
  action->ended = ended;
  if (job.kind != job.originalKind && isThere(url)) {
    action->deleteURL = url;
    auto target = moveTarget(job.kind, url, m_program.foundation.roots);
    if (!target) {
      m_program.platform.interface.saveError();
      return std::nullopt;
    }
    url = *std::move(target);
    action->url = url;
  }
  if (!job.isDisabled()) {
    // Root only writes an agent's file: it is loaded in the user's session.
    if (isAgent) {
      action->localAgentLoadPath = url.text();
    } else {
      action->kind = Action::Kind::writeAndLoad;
    }
  }
  const bool isSent = sendPrivileged(action);
  if (!isSent && !isAgent) return std::nullopt;
  return Written{.url = std::move(url), .isSent = isSent};
}

}  // namespace mirvel
