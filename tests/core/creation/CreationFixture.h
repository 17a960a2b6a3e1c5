#pragma once

#include <gmock/gmock.h>

#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {

/// A program with a shell, and what it has the helpers write.
class CreationFixture : public testdata::ProgramFixture {
 protected:
  CreationFixture() {
    // Most tests expect jobs that contain only what they enter.
    (void)foundation.defaults.setAutomaticPATH(false);
  }

  propertylist::Dictionary written() const { return helpers.written(); }
  /// The file's place below the machine's root.
  std::string writtenPath() const {
    if (helpers.requests.empty()) return "(nothing)";
    return std::filesystem::path(helpers.requests.back().text("path")).lexically_relative(folder.path());
  }
  std::string selectedName() {
    const auto job = program().selection.job();
    return job ? job->name : "(none)";
  }

  testdata::RecordingShell shell{program()};
};

}  // namespace mirvel
