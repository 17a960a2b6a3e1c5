#include "core/actions/RevisionController.h"

#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "core/propertylist/Reader.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

class RevisionControllerTest : public testdata::ProgramFixture {
 protected:
  std::shared_ptr<Launchd> job(const std::string& program, const char* file = "/jobs/a.plist") {
    return Launchd::read(testdata::jobText("job", {{"Program", program}}), URL::file(file), Kind::userAgent, {},
                         console);
  }
  RevisionController controller() { return {roots.applicationSupport, foundation.defaults, clock, troubles}; }
  StoreTroubles troubles;
  std::filesystem::path store() const { return roots.applicationSupport / "Revisions.plist"; }

  /// The programs in the revisions, the newest first.
  static std::string kept(const RevisionController& controller, const char* file = "/jobs/a.plist") {
    const propertylist::Value* const list = controller.revisions().find(file);
    if (!list) return "(nothing)";
    std::string result;
    for (const auto& entry : *list->as<propertylist::Array>()) {
      const auto& revision = *entry.as<propertylist::Dictionary>();
      result += *revision.find("Plist")->as<propertylist::Dictionary>()->find("Program")->as<std::string>();
    }
    return result;
  }
};

TEST_F(RevisionControllerTest, TheLatestAreKeptOnDiskTheNewestFirst) {
  ASSERT_TRUE(foundation.defaults.setNumberOfSavedRevisions(2));
  auto revisions = controller();
  EXPECT_EQ(kept(revisions), "(nothing)");
  for (const char* program : {"/1", "/2", "/3"}) {
    clock.now += 0.5;
    revisions.saveRevision(*job(program));
  }
  EXPECT_EQ(kept(revisions), "/3/2");
  EXPECT_EQ(kept(controller()), "/3/2") << "after another start";
  const auto& newest =
      *revisions.revisions().find("/jobs/a.plist")->as<propertylist::Array>()->front().as<propertylist::Dictionary>();
  EXPECT_EQ(*newest.find("Date"), propertylist::Value(1'000'001.5));

  ASSERT_TRUE(foundation.defaults.setNumberOfSavedRevisions(0));
  revisions.saveRevision(*job("/4"));
  EXPECT_EQ(kept(controller()), "");
  revisions.clearRevisions();
  EXPECT_FALSE(std::filesystem::exists(store()));
  EXPECT_EQ(kept(revisions), "(nothing)");
}

TEST_F(RevisionControllerTest, MalformedEntriesCountAsEmpty) {
  for (const char* content : {"garbage", "<plist><array/></plist>",
                              "<plist><dict><key>/jobs/a.plist</key><array><string>x</string></array></dict></plist>",
                              "<plist><dict><key>/jobs/a.plist</key><true/></dict></plist>"}) {
    (void)folder.write("support/Revisions.plist", content);
    auto revisions = controller();
    revisions.saveRevision(*job("/1"));
    EXPECT_EQ(kept(controller()), "/1") << content;
  }
}

TEST_F(RevisionControllerTest, AStoreThatCantBeWrittenKeepsTheRevisionInMemory) {
  (void)folder.write("support", "a file where the folder should be");
  int reports = 0;
  troubles.setListener([&](const StoreTrouble&) { ++reports; });
  auto revisions = controller();
  revisions.saveRevision(*job("/1"));
  revisions.saveRevision(*job("/2"));
  EXPECT_EQ(kept(revisions), "/2/1");
  EXPECT_EQ(reports, 1);
}

TEST_F(RevisionControllerTest, RevisionsInAStoreThatCouldNotBeReadForAWhileAreKept) {
  auto revisions = controller();
  revisions.saveRevision(*job("/1"));
  const auto away = roots.applicationSupport / "Away.plist";
  std::filesystem::rename(store(), away);
  std::filesystem::create_directory(store());
  revisions.saveRevision(*job("/2"));
  EXPECT_TRUE(std::filesystem::is_directory(store()));
  std::filesystem::remove(store());
  std::filesystem::rename(away, store());
  revisions.saveRevision(*job("/x", "/jobs/other.plist"));
  EXPECT_EQ(kept(controller()), "/1");
  EXPECT_EQ(kept(controller(), "/jobs/other.plist"), "/x");
}

TEST_F(RevisionControllerTest, RevisionsMoveWithTheirJob) {
  auto revisions = controller();
  for (const auto& [program, file] : {std::pair{"/1", "/jobs/a.plist"}, std::pair{"/2", "/jobs/b.plist"},
                                      std::pair{"/3", "/jobs/a.plist"}, std::pair{"/4", "/jobs/b.plist"}}) {
    clock.now += 1;
    revisions.saveRevision(*job(program, file));
  }
  revisions.jobMoved(URL::file("/jobs/a.plist"), URL::file("/jobs/b.plist"));
  EXPECT_EQ(kept(controller(), "/jobs/b.plist"), "/4/3/2/1");
  EXPECT_EQ(kept(controller(), "/jobs/a.plist"), "(nothing)");
  revisions.jobMoved(URL::file("/jobs/none.plist"), URL::file("/jobs/b.plist"));
  EXPECT_EQ(kept(controller(), "/jobs/b.plist"), "/4/3/2/1");
}

}  // namespace
}  // namespace mirvel
