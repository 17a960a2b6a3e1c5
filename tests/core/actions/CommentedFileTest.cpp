#include "core/actions/CommentedFile.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string commented =
    "<plist><dict><!-- who needs this? --><key>Label</key><string>a/b</string><key>Nice</key><integer>5</integer>"
    "</dict></plist>";

class CommentedFileTest : public testdata::ProgramFixture {
 protected:
  std::shared_ptr<Launchd> jobOf(const std::string& bytes) {
    (void)write(Kind::userAgent, "a.plist", bytes);
    scan();
    program().selection.select(jobNamed("a/b"));
    return program().selection.launchd();
  }
  std::vector<std::string> keptFiles() const {
    std::vector<std::string> names;
    std::error_code failure;
    for (const auto& entry : fs::directory_iterator(kept, failure)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

  const fs::path kept = roots.applicationSupport / "Kept Files";
};

TEST_F(CommentedFileTest, TheBytesAreKeptBeforeTheCommentsGo) {
  clock.now = 1'700'000'000;
  const auto job = jobOf(commented);
  interface.answer.button = Interface::defaultButton;
  EXPECT_TRUE(letCommentsGo(foundation, platform, program().editing, job));
  EXPECT_TRUE(letCommentsGo(foundation, platform, program().editing, job)) << "the user is asked once";
  EXPECT_THAT(interface.alerts, SizeIs(1));
  program().editing.reset();
  EXPECT_TRUE(letCommentsGo(foundation, platform, program().editing, job)) << "another edit";
  EXPECT_THAT(interface.alerts, SizeIs(2));
  EXPECT_THAT(keptFiles(), ElementsAre("a_b 2023-11-14T22.13.20Z.plist")) << "the same bytes";
  (void)folder.write(job->url.path(), commented + " ");
  EXPECT_TRUE(letCommentsGo(foundation, platform, program().editing, job));
  EXPECT_THAT(keptFiles(), ElementsAre("a_b 2023-11-14T22.13.20Z 2.plist", "a_b 2023-11-14T22.13.20Z.plist"));
  EXPECT_EQ(testdata::bytes(kept / keptFiles().back()), commented);
  EXPECT_EQ(fs::status(kept / keptFiles().back()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(fs::status(kept).permissions(), fs::perms::owner_all);
  EXPECT_NE(interface.alerts.at(0).informativeText.find(kept.string()), std::string::npos);
  EXPECT_EQ(interface.alerts.at(0).safeButton, Interface::alternateButton);
}

TEST_F(CommentedFileTest, WithoutConsentOrACopyTheFileIsNotReplaced) {
  const auto job = jobOf(commented);
  interface.answer.button = Interface::alternateButton;
  EXPECT_FALSE(letCommentsGo(foundation, platform, program().editing, job));
  EXPECT_THAT(keptFiles(), IsEmpty());
  EXPECT_THAT(interface.errors, IsEmpty());
  interface.answer.button = Interface::defaultButton;
  (void)folder.write(kept.lexically_relative(folder.path()), "no folder");
  EXPECT_FALSE(letCommentsGo(foundation, platform, program().editing, job));
  EXPECT_THAT(interface.errors, SizeIs(1));
}

TEST_F(CommentedFileTest, AFileWithoutCommentsAndANewJobAreNotAskedAbout) {
  EXPECT_TRUE(letCommentsGo(foundation, platform, program().editing, jobOf(testdata::jobText("a/b"))));
  const auto job = jobOf(commented);
  job->isNewFile = true;
  EXPECT_TRUE(letCommentsGo(foundation, platform, program().editing, job));
  job->isNewFile = false;
  fs::remove(job->url.path());
  EXPECT_TRUE(letCommentsGo(foundation, platform, program().editing, job));
  EXPECT_THAT(interface.alerts, IsEmpty());
}

}  // namespace
}  // namespace mirvel
