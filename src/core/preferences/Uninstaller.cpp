#include "core/preferences/Uninstaller.h"

#include <algorithm>
#include <utility>

#include "core/actions/Action.h"
#include "core/actions/ActionController.h"
#include "core/actions/HelperErrors.h"
#include "core/actions/HostStart.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/runs/JobRuns.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

constexpr RunDomain domains[] = {RunDomain::Root, RunDomain::User};

/// Where launchd runs jobs, its reports don't tell of earlier runs.
bool isLaunchds(const JobReport& report) {
  return report.isPartial;
}

}  // namespace

Uninstaller::Uninstaller(const SessionContext& session, ActionController& actions, HostStart& hostStart,
                         const JobRuns& runs, Busy& saving, Busy& deleting)
    : m_session(session),
      m_actions(actions),
      m_hostStart(hostStart),
      m_runs(runs),
      m_saving(saving),
      m_deleting(deleting),
      m_delay(session.platform.mainQueue) {}

void Uninstaller::uninstall() {
  if (m_state != State::Idle || std::exchange(m_isAsking, true)) return;
  const Localize& localize = m_session.foundation.localize;
  const PreferencesTexts texts(localize);
  const int answer = m_session.platform.interface.alert({.message = texts.uninstallQuestion(),
                                                         .informativeText = consequence(),
                                                         .defaultTitle = texts.uninstallButton(),
                                                         .alternateTitle = localize.cancel(),
                                                         .safeButton = Interface::alternateButton});
  m_isAsking = false;
  if (answer == Interface::defaultButton) authorise();
}

/// The loaded jobs: first those that run now, and first those of root.
std::vector<std::string> Uninstaller::stoppedJobs() const {
  const PreferencesTexts texts(m_session.foundation.localize);
  std::vector<std::string> running, loaded;
  for (const RunDomain domain : domains) {
    const auto firstRunning = static_cast<std::ptrdiff_t>(running.size());
    const auto firstLoaded = static_cast<std::ptrdiff_t>(loaded.size());
    for (const auto& [label, report] : m_runs.reports(domain)) {
      if (isLaunchds(report) || report.isTest) continue;
      const std::string name = domain == RunDomain::Root ? texts.ofRoot(label) : label;
      if (report.process > 0) {
        running.push_back(texts.runningNow(name));
      } else if (report.isLoaded) {
        loaded.push_back(name);
      }
    }
    std::sort(running.begin() + firstRunning, running.end());
    std::sort(loaded.begin() + firstLoaded, loaded.end());
  }
  running.insert(running.end(), loaded.begin(), loaded.end());
  return running;
}

std::vector<std::string> Uninstaller::gaps() const {
  std::vector<std::string> result;
  for (const RunDomain domain : domains) {
    if (const auto& gap = m_runs.gap(domain); !gap.empty()) result.push_back(gap);
  }
  return result;
}

/// What is known to stop; empty if nothing is, but others may.
std::string Uninstaller::knownToStop() const {
  constexpr std::size_t mostNames = 12;  // so that the question fits on a small screen
  const PreferencesTexts texts(m_session.foundation.localize);
  const auto jobs = stoppedJobs();
  const bool hasLaunchd = std::any_of(std::begin(domains), std::end(domains), [&](RunDomain domain) {
    const auto& reports = m_runs.reports(domain);
    return std::any_of(reports.begin(), reports.end(), [](const auto& entry) { return isLaunchds(entry.second); });
  });
  if (jobs.empty()) return hasLaunchd ? texts.launchdGoesOn() : gaps().empty() ? texts.noJobsWillStop() : "";
  std::string text = texts.jobsWillStop(static_cast<std::int64_t>(jobs.size())) + ":";
  const std::size_t named = jobs.size() <= mostNames ? jobs.size() : mostNames - 1;
  for (std::size_t i = 0; i < named; ++i) text += "\n• " + jobs[i];
  if (named < jobs.size()) text += "\n• " + texts.andOthers(static_cast<std::int64_t>(jobs.size() - named));
  return text;
}

std::string Uninstaller::consequence() const {
  const PreferencesTexts texts(m_session.foundation.localize);
  std::string text = knownToStop();
  for (const std::string& gap : gaps()) {
    text += text.empty() ? texts.jobsMayStop(gap) : "\n\n" + texts.statesArentKnown(gap);
  }
  return text + "\n\n" + texts.whatUninstallKeeps();
}

/// The password comes first, since a save could begin while the user is asked for it.
void Uninstaller::authorise() {
  show(State::Working, PreferencesTexts(m_session.foundation.localize).uninstalling());
  m_failure.clear();
  m_actions.authorise(
      m_delay.whileOwned([this](bool isGranted) { isGranted ? waitUntilNothingIsSaved() : ended(false); }));
}

/// A save that is in progress would start the host again, or find it gone.
void Uninstaller::waitUntilNothingIsSaved() {
  m_saved = m_deleted = {};
  if (!m_saving.isBusy() && !m_deleting.isBusy()) return send();
  // Later, because the subscriptions can't be replaced while they are called.
  const auto goOn = [this] {
    m_delay(0, [this] {
      if (m_state == State::Waiting) waitUntilNothingIsSaved();
    });
  };
  m_saved = m_saving.changed().subscribe(goOn);
  m_deleted = m_deleting.changed().subscribe(goOn);
  show(State::Waiting, PreferencesTexts(m_session.foundation.localize).waitingForSave());
}

void Uninstaller::cancel() {
  if (m_state != State::Waiting) return;
  m_saved = m_deleted = {};
  show(State::Idle, PreferencesTexts(m_session.foundation.localize).notUninstalled());
}

void Uninstaller::send() {
  m_hostStart.pause();        // it would be started again as soon as the window becomes active
  m_busy = m_saving.begin();  // nothing can be saved until the hosts have ended
  show(State::Working, PreferencesTexts(m_session.foundation.localize).uninstalling());
  const auto action = std::make_shared<Action>(Action::Kind::Uninstall);
  action->presentError = false;
  action->cleanUp = false;
  action->failed = m_delay.whileOwned(
      [this](const HelperMessage& message) { m_failure = message.message + "\n" + message.informativeText; });
  action->ended = m_delay.whileOwned([this](bool isDone) { ended(isDone); });
  if (!m_actions.sendPrivileged(action)) ended(false);
}

void Uninstaller::ended(bool isDone) {
  const PreferencesTexts texts(m_session.foundation.localize);
  m_busy.release();
  if (!isDone) m_hostStart.resume();
  show(State::Idle, isDone ? texts.uninstalled() : texts.notUninstalled());
  m_delay(1.0, [this] { m_session.fetcher.refresh(); });
  if (!m_failure.empty()) m_session.platform.interface.error(texts.uninstallFailed(), m_failure);
}

void Uninstaller::show(State state, std::string status) {
  m_state = state;
  m_status = std::move(status);
  m_changed.post();
}

}  // namespace mirvel
