#pragma once

#include <cstdint>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the sheet that tests a job.
class TestTexts : public Texts {
 public:
  using Texts::Texts;

  std::string close() const { return text("Close"); }
  /// `lines` and `bytes` are the numbers of what a long output leaves out.
  std::string leftOut(std::int64_t lines, std::int64_t bytes) const {
    return format("[… left out: lines %@, bytes %@ …]", {int_(lines), int_(bytes)});
  }
  std::string itIsStoppedWhenTheSheetCloses() const { return text("It’s stopped when you close this sheet."); }
  std::string noCommand() const { return text("The job has no command"); }
  std::string noOutput() const { return text("No output"); }
  std::string noOutputYet() const { return text("No output yet"); }
  std::string noPassword() const { return text("The test wasn’t run, because it needs a password"); }
  std::string notRun() const { return text("The test couldn’t be run"); }
  std::string output() const { return text("Output"); }
  std::string outputIsntShown() const {
    return text("The output of a job that changes its root folder can’t be shown.");
  }
  std::string running() const { return text("Running"); }
  std::string runningFor(const std::string& duration) const { return format("Running for %@", {duration}); }
  std::string runAgain() const { return text("Run Again"); }
  std::string stillRunning(const std::string& duration) const { return format("Still running after %@", {duration}); }
  std::string stop() const { return text("Stop"); }
  std::string stopped() const { return text("Stopped"); }
  std::string stoppedAfter(const std::string& duration) const { return format("Stopped after %@", {duration}); }
  std::string test() const { return text("Test"); }
  std::string waitingForPassword() const { return text("Waiting for the password"); }
};

}  // namespace mirvel
