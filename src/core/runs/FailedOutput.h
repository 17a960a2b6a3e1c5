#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/actions/Action.h"
#include "core/base/Signal.h"
#include "core/messages/JobReport.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class ActionController;
class Clock;
class Job;

/// Fetches the last lines that a failed run of one of the user's jobs has printed. One run at a time; no request ever
/// asks for a password or shows an error. For the main thread.
class FailedOutput {
 public:
  static constexpr std::size_t mostLines = 5;
  static constexpr std::size_t longestLine = 300;  ///< in characters, as displayed; the rest is cut off
  static constexpr double longestAge = 86'400;     ///< in seconds; the output of older runs isn't fetched

  /// All must outlive this object.
  FailedOutput(ActionController& actions, const Clock& clock, MainQueue& queue);
  ~FailedOutput();
  FailedOutput(const FailedOutput&) = delete;
  FailedOutput& operator=(const FailedOutput&) = delete;

  /// Asks for the output of a run, unless that has been done. The output of another run is dropped. If the run has just
  /// ended, asks again a moment later, since its host may log the last output after it has reported the end.
  void fetch(const Job& job, const RunReport& run);
  /// Drops the output and what is being fetched.
  void clear();
  /// The lines, separated by line ends; empty if there are none, or as long as they aren't known.
  const std::string& text() const { return m_text; }
  /// Posted when an answer has changed `text`.
  Signal<>& changed() { return m_changed; }

 private:
  void ask(const RunReport& run);
  void cancel();
  void answered(const messages::LogLines& log, const RunReport& run);

  ActionController& m_actions;
  const Clock& m_clock;
  Delay m_delay;
  std::string m_label;
  double m_start = 0;           ///< of the run
  Action::Shared m_query;       ///< null unless an answer is awaited
  std::uint64_t m_fetches = 0;  ///< counts the fetched runs; delayed queries of earlier ones are void
  std::string m_text;
  Signal<> m_changed;
};

}  // namespace mirvel
