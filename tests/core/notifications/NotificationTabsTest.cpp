#include <gmock/gmock.h>

#include "core/notifications/NotificationsAll.h"
#include "core/notifications/NotificationsExclude.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotificationTabsTest : public testdata::ProgramFixture {
 protected:
  NotificationTabsTest() { EXPECT_TRUE(foundation.defaults.setRunAgent(true)); }

  /// The rows as text: name, then what is enabled (E), told (c), told of failures (f).
  std::vector<std::string> rowsOf(NotificationsAll& all) {
    all.reload();
    std::vector<std::string> result;
    for (const auto& row : all.rows()) {
      result.push_back(row.name + " " + (row.isEnabled ? "E" : "-") + (row.tellsChanges ? "c" : "-") +
                       (!row.tellsFailures   ? " "
                        : *row.tellsFailures ? "f"
                                             : "-") +
                       (row.areFailuresEnabled ? "E" : "-"));
    }
    return result;
  }
  static std::vector<std::string> prefixesOf(const NotificationsExclude& exclude) {
    std::vector<std::string> result;
    for (const auto& row : exclude.rows()) result.push_back(row.prefix);
    return result;
  }

  Exceptions exceptions{roots.applicationSupport, &foundation.storeTroubles};
};

TEST_F(NotificationTabsTest, AllListsEveryJobThatTheAgentWatches) {
  writeJob(Kind::userAgent, "job 10");
  writeJob(Kind::localAgent, "job 2");
  writeJob(Kind::localDaemon, "org.x");
  writeJob(Kind::userAgent, "com.apple.x");
  writeJob(Kind::systemAgent, "com.apple.y");
  write(Kind::privilegedHelperTool, "tool", "program");
  (void)folder.write("extra/unloaded.plist", testdata::jobText("unloaded"));
  ASSERT_TRUE(foundation.defaults.setFolders({folder.path() / "extra"}));
  loginItems.ownItems = {{.name = "login item", .path = "/a", .kind = "Application"}};
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  program().fetcher.fetchJobs();
  settleFolders();
  ASSERT_EQ(jobNamed("unloaded")->kind, Kind::extraFolder);
  NotificationsAll all(program().session, exceptions);
  ASSERT_TRUE(exceptions.setTellsChanges("job 2", false));
  ASSERT_TRUE(exceptions.setTellsFailures("job 10", false));
  ASSERT_TRUE(exceptions.replacePrefix("", 0, "org."));
  ASSERT_TRUE(exceptions.replacePrefix("", 0, "com.apple"));
  EXPECT_THAT(rowsOf(all), ElementsAre("com.apple.x EcfE", "com.apple.y -cf-", "job 2 E-fE", "job 10 Ec-E",
                                       "org.x -c -", "tool Ec E"));
  EXPECT_EQ(all.rows()[3].toolTip, path(Kind::userAgent, "job 10.plist"));
  EXPECT_EQ(all.rows()[5].toolTip, "");

  ASSERT_TRUE(exceptions.setTellsFailures(false));
  EXPECT_THAT(rowsOf(all)[0], "com.apple.x Ecf-");
  ASSERT_TRUE(foundation.defaults.setRunAgent(false));
  EXPECT_THAT(rowsOf(all), ElementsAre("com.apple.x -cf-", "com.apple.y -cf-", "job 2 --f-", "job 10 -c--",
                                       "org.x -c -", "tool -c -"));
}

TEST_F(NotificationTabsTest, AClickChangesItsOwnJob) {
  writeJob(Kind::userAgent, "a");
  writeJob(Kind::localAgent, "a");
  writeJob(Kind::userAgent, "b");
  scan();
  NotificationsAll all(program().session, exceptions);
  all.reload();
  all.setTellsChanges("a", false);
  EXPECT_THAT(rowsOf(all), ElementsAre("a E-fE", "a E-fE", "b EcfE")) << "jobs of one name share an entry";
  all.setTellsFailures("b", false);
  all.setTellsChanges("gone", false);
  all.setTellsChanges("a", true);
  EXPECT_THAT(rowsOf(all), ElementsAre("a EcfE", "a EcfE", "b Ec-E"));
  EXPECT_THAT(exceptions.names(), ElementsAre("gone"));
}

TEST_F(NotificationTabsTest, AnEmptyPrefixStaysInThePaneOnly) {
  NotificationsExclude exclude(exceptions);
  exclude.reload();
  const auto id = exclude.add();
  EXPECT_THAT(prefixesOf(exclude), ElementsAre(""));
  EXPECT_FALSE(std::filesystem::exists(exceptions.file()));
  exclude.reload();
  EXPECT_THAT(prefixesOf(exclude), ElementsAre(""));
  EXPECT_TRUE(exclude.setPrefix(id, " org. "));
  EXPECT_THAT(exceptions.prefixes(), ElementsAre(" org. ")) << "exactly as typed";
  EXPECT_FALSE(exclude.setPrefix(id, " org. "));
  EXPECT_TRUE(exclude.setPrefix(id, ""));
  EXPECT_THAT(exceptions.prefixes(), IsEmpty());
  EXPECT_THAT(prefixesOf(exclude), ElementsAre(""));
  EXPECT_FALSE(exclude.remove(id));
  EXPECT_THAT(exclude.rows(), IsEmpty());
}

TEST_F(NotificationTabsTest, AnEditGoesToItsOwnRow) {
  for (const char* prefix : {"a", "b", "a"}) ASSERT_TRUE(exceptions.replacePrefix("", 0, prefix));
  NotificationsExclude exclude(exceptions);
  exclude.reload();
  const auto first = exclude.rows()[0].id, second = exclude.rows()[1].id, third = exclude.rows()[2].id;
  Exceptions agent(roots.applicationSupport);
  ASSERT_TRUE(agent.replacePrefix("b", 0, ""));
  EXPECT_TRUE(exclude.setPrefix(third, "third"));
  EXPECT_THAT(exceptions.prefixes(), ElementsAre("a", "third"));
  EXPECT_FALSE(exclude.setPrefix(second, "x")) << "it has been removed meanwhile";
  EXPECT_FALSE(exclude.remove(second));
  EXPECT_TRUE(exclude.remove(first));
  EXPECT_THAT(exceptions.prefixes(), ElementsAre("third"));
  EXPECT_EQ(exclude.rows()[0].id, third);
}

}  // namespace
}  // namespace mirvel
