#include "core/runs/TestRun.h"

#include <utility>

#include "core/actions/ActionController.h"
#include "core/actions/ActionTexts.h"
#include "core/actions/HelperErrors.h"
#include "core/catalogue/Launchd.h"
#include "core/messages/Replies.h"
#include "core/ports/Interface.h"
#include "core/runs/RunTexts.h"
#include "core/runs/TestTexts.h"
#include "core/runs/VisibleText.h"

namespace mirvel {

namespace {

TestRun::Grade gradeOf(const RunEnd& end) {
  if (end.isStopped || end.how == RunEnd::How::Lost) return TestRun::Grade::Unclear;
  return end.how == RunEnd::How::Exited && end.code == 0 ? TestRun::Grade::Good : TestRun::Grade::Bad;
}

/// The path only identifies the test for the helper.
URL identifyingURL(const Roots& roots, const TestJob& job, const char* extension) {
  return URL::file(roots.ownTests() / (job.label + extension));
}

}  // namespace

TestRun::TestRun(const Setup& setup) : m_setup(setup), m_delay(setup.mainQueue) {}

TestRun::~TestRun() {
  remove();
}

void TestRun::start(const Launchd& job) {
  remove();
  reset();
  const auto test = TestJob::of(job.plist(), m_setup.repairs);
  if (!test) {
    const TestTexts texts(m_setup.localize);
    return end(Grade::Bad, job.plist().run.empty() ? texts.noCommand() : texts.notRun());
  }
  m_hasOutput = test->hasOutput || !job.kind.isDaemon();
  send(Action::test(identifyingURL(m_setup.roots, *test, ".plist"), identifyingURL(m_setup.roots, *test, ".out"),
                    test->text, test->label),
       job.kind.isDaemon());
}

void TestRun::reset() {
  ++m_test;
  m_seconds = 0;
  m_hasOutput = true;
  m_grade = Grade::None;
  m_verdict.clear();
  m_details.clear();
  m_beginning.clear();
  m_heldBack.clear();
  m_rest.clear();
  m_outputChanged.post();
}

/// Callbacks of a test that has been replaced or removed are ignored, although a cancelled action makes none.
void TestRun::send(const Action::Shared& action, bool isRoots) {
  const auto ifAsking = [this, key = action.get()](auto handle) {
    return [this, key, handle](const auto&... arguments) {
      if (m_asking.get() == key) handle(arguments...);
    };
  };
  action->sent = ifAsking([this] { wasSent(); });
  action->testProgressed = ifAsking([this](const messages::TestProgress& progress) { progressed(progress); });
  action->testFinished = ifAsking([this](const messages::TestResult& result) { finished(result); });
  action->failed =
      ifAsking([this](const HelperMessage& failure) { end(Grade::Bad, failure.message, failure.informativeText); });
  action->ended = ifAsking([this](bool isDone) { wasAnswered(isDone); });
  action->presentError = false;  // the verdict says it
  m_asking = action;
  m_state = isRoots ? State::AwaitingPassword : State::Running;
  const bool isAccepted = isRoots ? m_setup.actions.sendPrivileged(action) : m_setup.actions.send(action);
  if (isAccepted) return m_changed.post();
  m_asking = nullptr;
  end(Grade::Bad, ActionTexts(m_setup.localize).couldNotEstablishCommunicationWithHelperTool());
}

void TestRun::wasSent() {
  m_state = State::Running;
  m_loaded = m_asking;
  countSeconds(m_test);
  m_changed.post();
}

void TestRun::countSeconds(std::int64_t test) {
  m_delay(1, [this, test] {
    if (test != m_test || m_state != State::Running) return;
    ++m_seconds;
    countSeconds(test);
    m_changed.post();
  });
}

void TestRun::progressed(const messages::TestProgress& progress) {
  std::string fresh = std::exchange(m_heldBack, {}) + progress.beginning;
  if (fresh.ends_with('\r')) {
    fresh.pop_back();
    m_heldBack = "\r";
  }
  m_beginning += visibleText(fresh);
  showRest(progress.droppedLines, progress.droppedBytes, progress.end);
  m_outputChanged.post();
}

/// The result has all of the output, even if pieces of it were lost.
void TestRun::finished(const messages::TestResult& result) {
  m_beginning = visibleText(result.text);
  showRest(result.droppedLines, result.droppedBytes, result.end);
  m_outputChanged.post();
  const TestTexts texts(m_setup.localize);
  const RunTexts runs(m_setup.localize);
  if (result.outcome) return end(gradeOf(*result.outcome), runs.ended(*result.outcome, result.seconds));
  end(Grade::Unclear, texts.stillRunning(runs.duration(result.seconds)), texts.itIsStoppedWhenTheSheetCloses());
  m_state = State::StillLoaded;
  m_changed.post();
}

void TestRun::showRest(std::int64_t droppedLines, std::int64_t droppedBytes, const std::optional<std::string>& end) {
  m_rest.clear();
  if (!end) return;
  if (droppedBytes > 0) {
    const bool isAtLineStart = m_beginning.empty() || m_beginning.ends_with('\n');
    m_rest = (isAtLineStart ? "" : "\n") + TestTexts(m_setup.localize).leftOut(droppedLines, droppedBytes) + '\n';
  }
  m_rest += visibleText(*end);
}

/// A helper that fails to run a test has removed it. Without a result or a failure, the user wasn't authorised, or the
/// reply was malformed.
void TestRun::wasAnswered(bool isDone) {
  const bool wasSent = m_loaded != nullptr;
  if (!isDone) m_loaded = nullptr;
  m_asking = nullptr;
  if (!isBusy()) return;
  const TestTexts texts(m_setup.localize);
  end(Grade::Unclear, wasSent ? texts.notRun() : texts.noPassword());
}

void TestRun::end(Grade grade, std::string verdict, std::string details) {
  m_state = State::Ended;
  m_grade = grade;
  m_verdict = std::move(verdict);
  m_details = std::move(details);
  m_changed.post();
}

void TestRun::refuse(const InvalidField& invalid) {
  remove();
  reset();
  end(Grade::Bad, invalid.message, invalid.reason);
}

void TestRun::stop() {
  if (!canStop()) return;
  const bool hadBegun = m_state != State::AwaitingPassword;
  const bool hasTime = m_state == State::Running && m_seconds > 0;  // they aren't counted once the helper has replied
  remove();
  const TestTexts texts(m_setup.localize);
  if (!hadBegun) return end(Grade::Unclear, texts.noPassword());
  const auto time = RunTexts(m_setup.localize).duration(static_cast<double>(m_seconds));
  end(Grade::Unclear, hasTime ? texts.stoppedAfter(time) : texts.stopped());
}

/// The helper stops a test whose request is cancelled. After the reply, it stops and removes the job on request.
void TestRun::remove() {
  const auto asking = std::exchange(m_asking, nullptr);
  const auto loaded = std::exchange(m_loaded, nullptr);
  if (asking) return m_setup.actions.cancel(asking);
  if (!loaded) return;
  const auto action = Action::unload(loaded->label, *loaded->testURL);
  action->presentError = false;
  action->cleanUp = false;
  (void)m_setup.actions.sendAfter(*loaded, action);  // otherwise the helper has ended, and its tests with it
}

std::string TestRun::verdict() const {
  const TestTexts texts(m_setup.localize);
  if (m_state == State::AwaitingPassword) return texts.waitingForPassword();
  if (m_state != State::Running) return m_verdict;
  if (m_seconds == 0) return texts.running();
  return texts.runningFor(RunTexts(m_setup.localize).duration(static_cast<double>(m_seconds)));
}

std::string TestRun::placeholder() const {
  const TestTexts texts(m_setup.localize);
  if (!m_beginning.empty()) return {};
  if (!m_hasOutput) return texts.outputIsntShown();
  if (m_state == State::Running) return texts.noOutputYet();
  return m_loaded ? texts.noOutput() : std::string();
}

}  // namespace mirvel
