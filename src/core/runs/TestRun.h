#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "core/actions/Action.h"
#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"
#include "core/runs/TestJob.h"

namespace mirvel {

class ActionController;
class CommandRepairs;
class Launchd;
class Localize;
struct InvalidField;
struct Roots;

/// Tests the command of a job: asks a helper to run it once, and follows its output until it ends. The job itself is
/// neither loaded nor changed. Stopping the test, starting it again and destroying the object stop what it has started
/// and remove it, over the connection that was used for it. Main thread only.
class TestRun {
 public:
  enum class State {
    Idle,
    AwaitingPassword,
    Running,
    StillLoaded,  ///< it was still running when the helper stopped waiting for it; it runs until it is removed
    Ended         ///< it has ended, was stopped, or couldn't be run
  };
  /// What the verdict says at a glance.
  enum class Grade { None, Good, Bad, Unclear };

  struct Setup {
    ActionController& actions;
    const CommandRepairs& repairs;
    MainQueue& mainQueue;
    const Localize& localize;
    const Roots& roots;
  };

  /// All that the setup refers to must outlive the test.
  explicit TestRun(const Setup& setup);
  ~TestRun();
  TestRun(const TestRun&) = delete;
  TestRun& operator=(const TestRun&) = delete;

  /// Runs what a save of the record would write at this moment; see `TestJob`. A daemon is run by root, as the user
  /// that it names; the user may be asked for a password. What an earlier call has started is removed first.
  void start(const Launchd& job);
  /// Ends with the reason why the job can't be tested: a field of the editor has an invalid content.
  void refuse(const InvalidField& invalid);
  /// Stops the job, and keeps its output so far.
  void stop();

  State state() const { return m_state; }
  bool isBusy() const { return m_state == State::AwaitingPassword || m_state == State::Running; }
  bool canStop() const { return isBusy() || m_state == State::StillLoaded; }
  /// How the test ended, or what it is doing: "Exited with code 3 after 1.2 s", "Running for 5 s".
  std::string verdict() const;
  /// More about it, such as the reason of a failure; often empty.
  const std::string& details() const { return m_details; }
  Grade grade() const { return m_grade; }
  /// A text in place of output while there is none, such as "No output".
  std::string placeholder() const;

  /// The output from its beginning, and what follows it: empty, or the end of a long output after a line that says how
  /// much was left out. The beginning only grows during a test. Both are for display, see `visibleText`.
  const std::string& beginning() const { return m_beginning; }
  const std::string& rest() const { return m_rest; }

  /// Posted when the output has changed.
  Signal<>& outputChanged() { return m_outputChanged; }
  /// Posted when anything else has changed.
  Signal<>& changed() { return m_changed; }

 private:
  void send(const Action::Shared& action, bool isRoots);
  void reset();
  void wasSent();
  void countSeconds(std::int64_t test);
  void progressed(const messages::TestProgress& progress);
  void finished(const messages::TestResult& result);
  void wasAnswered(bool isDone);
  void end(Grade grade, std::string verdict, std::string details = {});
  void showRest(std::int64_t droppedLines, std::int64_t droppedBytes, const std::optional<std::string>& end);
  void remove();

  const Setup m_setup;
  Delay m_delay;
  State m_state = State::Idle;
  Grade m_grade = Grade::None;
  std::string m_verdict;
  std::string m_details;
  std::string m_beginning;
  std::string m_heldBack;  ///< a carriage return, until it's known whether a line feed follows
  std::string m_rest;
  bool m_hasOutput = true;     ///< false: it can't be captured
  std::int64_t m_test = 0;     ///< counts the calls of `start`
  std::int64_t m_seconds = 0;  ///< since the request was sent
  Action::Shared m_asking;     ///< the request; null once it has ended
  Action::Shared m_loaded;     ///< the request whose job has to be removed; null if there is none
  Signal<> m_outputChanged;
  Signal<> m_changed;
};

}  // namespace mirvel
