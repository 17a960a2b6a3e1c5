#pragma once

#include <string>

#include "core/locale/Localize.h"
#include "core/messages/JobReport.h"

namespace mirvel {

/// How runs of jobs ended, and why others were missed, in words. For the main thread.
class RunTexts : public Texts {
 public:
  explicit RunTexts(const Localize& localize) : Texts(localize), m_localize(localize) {}

  /// How a run ended, as a sentence without full stop:
  ///
  ///     Exited with code 3
  ///     Ended by signal 11 (segmentation fault)
  ///     Stopped
  ///     Couldn’t be started: the program “/x” doesn’t exist
  std::string ended(const RunEnd& end) const;
  /// The same with the time that it took: "Exited with code 3 after 1.2 s". Runs that weren't started, were
  /// killed after a time-out, or whose end isn't known, have none.
  std::string ended(const RunEnd& end, double seconds) const;
  /// How a run ended, for the middle of a sentence: "exit code 3", "stopped".
  std::string ending(const RunEnd& end) const;
  /// For the middle of a sentence: "the computer slept".
  std::string whyMissed(MissedRun::Why why) const;
  /// Why a program couldn't be started, for the middle of a sentence: "the program “/x” doesn’t exist". Looks for a
  /// program that the system hasn't found, because the system doesn't say whether it was its interpreter.
  std::string obstacle(const RunEnd& end) const;
  /// What a signal means, such as "segmentation fault"; empty for rare signals.
  std::string signal(std::int64_t number) const;
  /// A length of time with the precision that matters: "0.02 s", "1.2 s", "45 s", "2 min 5 s", "3 h 20 min", "2 d 4 h".
  std::string duration(double seconds) const;

 private:
  std::string outcome(const RunEnd& end) const;
  std::string decimal(double number, int places) const;
  std::string reason(int systemCode) const;
  std::string programObstacle(const RunEnd& end) const;
  std::string folderObstacle(const RunEnd& end) const;
  std::string fileObstacle(const RunEnd& end) const;
  std::string nameObstacle(const RunEnd& end) const;

  const Localize& m_localize;
};

}  // namespace mirvel
