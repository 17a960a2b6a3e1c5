#include "ui/app/EndSignals.h"

#include <gtest/gtest.h>
#include <signal.h>

#include "core/catalogue/Launchd.h"
#include "core/files/ReadFile.h"
#include "ui/app/ApplicationFixture.h"

namespace mirvel::ui {
namespace {

class EndSignalsTest : public ApplicationFixture {};

TEST_F(EndSignalsTest, ASignalEndsTheApplicationWithoutAQuestionAndKeepsTheEdit) {
  writeJob("a");
  start();
  select("a");
  program().editing.markJobChanged()->plist().nice = 5;
  {
    const EndSignals endSignals(program().shell, program().termination);
    ASSERT_EQ(::raise(SIGTERM), 0);
    EXPECT_TRUE(testdata::eventually([this] { return !window().isVisible(); }));
  }
  const auto kept = readFile(program().foundation.roots.applicationSupport / "Drafts.plist", 100'000);
  ASSERT_TRUE(kept);
  EXPECT_NE(kept->find("<key>Contents</key>"), std::string::npos);
}

}  // namespace
}  // namespace mirvel::ui
