#include "core/actions/RevisionController.h"

#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "core/propertylist/Reader.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

class RevisionControllerTest : public testdata::ProgramFixture {
 protected:
  std::shared_ptr<Launchd> job(const std::string& program) {
    return Launchd::read(testdata::jobText("job", {{"Program", program}}), URL::file("/jobs/a.plist"), Kind::userAgent,
                         Launchd::Source::Elsewhere, {}, console);
  }
  RevisionController controller() { return {roots.applicationSupport, foundation.defaults, clock}; }
  std::filesystem::path store() const { return roots.applicationSupport / "Revisions.plist"; }

  /// Programs of the kept revisions, the newest first.
  static std::string kept(const RevisionController& controller) {
    const plist::Value* const list = controller.revisions().find("/jobs/a.plist");
    if (!list) return "(nothing)";
    std::string result;
    for (const auto& entry : *list->as<plist::Array>()) {
      const auto& revision = *entry.as<plist::Dictionary>();
      result += *revision.find("Plist")->as<plist::Dictionary>()->find("Program")->as<std::string>();
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
  EXPECT_EQ(kept(controller()), "/3/2") << "as another start reads it";
  const auto& newest =
      *revisions.revisions().find("/jobs/a.plist")->as<plist::Array>()->front().as<plist::Dictionary>();
  EXPECT_EQ(*newest.find("Date"), plist::Value(1'000'001.5));

  ASSERT_TRUE(foundation.defaults.setNumberOfSavedRevisions(0));
  revisions.saveRevision(*job("/4"));
  EXPECT_EQ(kept(controller()), "");
  revisions.clearRevisions();
  EXPECT_FALSE(std::filesystem::exists(store()));
  EXPECT_EQ(kept(revisions), "(nothing)");
}

TEST_F(RevisionControllerTest, AStoreOfAnotherFormCountsAsEmpty) {
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
  auto revisions = controller();
  revisions.saveRevision(*job("/1"));
  EXPECT_EQ(kept(revisions), "/1");
  EXPECT_TRUE(interface.errors.empty());
}

}  // namespace
}  // namespace mirvel
