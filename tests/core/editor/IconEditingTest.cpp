#include "core/editor/IconEditing.h"

#include <gmock/gmock.h>

#include "core/catalogue/CustomIcons.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::SizeIs;

class IconEditingTest : public testdata::ProgramFixture {};

TEST_F(IconEditingTest, AnIconIsStoredUnderThePathOfItsJobAndShown) {
  writeJob(Kind::userAgent, "a");
  scan();
  testdata::RecordingShell shell(program());
  const auto job = jobNamed("a");
  program().selection.select(job);
  const auto file = customIconFile(roots.applicationSupport, *job->iconStoreName());

  program().icons.setIcon(job, "picture");
  EXPECT_EQ(testdata::bytes(file), "picture");
  EXPECT_EQ(job->customIcon, Image::file(file));
  program().icons.setIcon(job, "another");
  EXPECT_EQ(testdata::bytes(file), "another");
  EXPECT_EQ(shell.count("updateIcon"), 2U);
  EXPECT_EQ(shell.count("reloadJob a"), 2U);
  EXPECT_FALSE(program().editing.hasUnsavedChanges()) << "it is no part of the job's file";

  program().icons.removeIcon(job);
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(job->customIcon, std::nullopt);
  EXPECT_EQ(shell.count("updateIcon"), 3U);
}

TEST_F(IconEditingTest, AFailureIsReportedAndChangesNothing) {
  writeJob(Kind::userAgent, "a");
  scan();
  (void)folder.write("support", "a file in the place of the folder");
  program().icons.setIcon(jobNamed("a"), "picture");
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(jobNamed("a")->customIcon, std::nullopt);
}

}  // namespace
}  // namespace mirvel
