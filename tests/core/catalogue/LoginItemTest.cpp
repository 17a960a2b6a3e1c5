#include "core/catalogue/LoginItem.h"

#include <gtest/gtest.h>

#include "core/text/Bytes.h"
#include "support/FakeLoginItems.h"
#include "support/FakeWorkspace.h"

namespace mirvel {
namespace {

std::vector<std::string> names(const Jobs& jobs) {
  std::vector<std::string> result;
  for (const auto& job : jobs) result.push_back(job->name);
  return result;
}

class LoginItemTest : public testing::Test {
 protected:
  testdata::FakeLoginItems items;
};

TEST_F(LoginItemTest, AnEntryOfTheUsersListIsIdentifiedByItsName) {
  items.ownItems = {{"Café Notes", "/Applications/Notes.app", "Application", {}},
                    {"Twin", "/a", {}, Image::named("twin")},
                    {"Twin", "/a", {}, {}}};
  const Jobs jobs = LoginItem::systemPreferencesItems(items, false);
  ASSERT_EQ(jobs.size(), 3U);
  const auto& item = dynamic_cast<const LoginItem&>(*jobs[0]);
  EXPECT_EQ(item.kind, Kind::loginItemSystemPreferences);
  EXPECT_EQ(item.summary, "Notes.app");
  EXPECT_EQ(item.checksum, toBase64("Café Notes/Applications/Notes.app"));
  EXPECT_FALSE(item.url.isFile());
  EXPECT_EQ(item.run(), "/Applications/Notes.app");
  EXPECT_EQ(item.iconPath, "/Applications/Notes.app");
  EXPECT_EQ(item.icon, Image::iconOfPath("/Applications/Notes.app"));
  EXPECT_EQ(item.textContent, "Café Notes/Applications/Notes.app");
  EXPECT_EQ(std::get<LoginItem::SystemPreferences>(item.subtype).kind, "Application");
  EXPECT_EQ(jobs[1]->icon, Image::named("twin"));
  EXPECT_EQ(*jobs[1], *jobs[2]);
  EXPECT_FALSE(jobs[0]->url.equalTo(jobs[1]->url));
}

TEST_F(LoginItemTest, AnItemOfAnApplicationIsNamedAfterIt) {
  items.bundledItems = {{"Notes",
                         "Helper.app",
                         "/Applications/Notes.app/Contents/Library/LoginItems/Helper.app",
                         "/Applications/Notes.app",
                         {}}};
  const Jobs jobs = LoginItem::applicationItems(items, false);
  ASSERT_EQ(jobs.size(), 1U);
  const auto& item = dynamic_cast<const LoginItem&>(*jobs[0]);
  EXPECT_EQ(item.kind, Kind::loginItemApplication);
  EXPECT_EQ(item.name, "Notes");
  EXPECT_EQ(item.summary, "Helper.app");
  EXPECT_EQ(item.checksum, toBase64("NotesHelper.app/Applications/Notes.app"));
  EXPECT_TRUE(item.url.equalTo(URL::file("/Applications/Notes.app")));
  EXPECT_EQ(item.run(), "/Applications/Notes.app/Contents/Library/LoginItems/Helper.app");
  EXPECT_EQ(item.icon, Image::iconOfPath("/Applications/Notes.app"));
  EXPECT_EQ(item.textContent, "/Applications/Notes.app");
}

TEST_F(LoginItemTest, ItemsWithoutNameOrPathAndOurOwnAreSkipped) {
  items.ownItems = {{"", "/a"}, {"b", ""}, {"MirvelAgent", "/e"}, {"f", "/f"}};
  items.bundledItems = {
      {"", "x", "/x", "/a", {}}, {"g", "x", "", "/a", {}}, {"Mirvel", "x", "/x", "/a", {}}, {"h", "x", "/x", "/a", {}}};
  EXPECT_EQ(names(LoginItem::systemPreferencesItems(items, false)), (std::vector<std::string>{"f"}));
  EXPECT_EQ(names(LoginItem::systemPreferencesItems(items, true)), (std::vector<std::string>{"MirvelAgent", "f"}));
  EXPECT_EQ(names(LoginItem::applicationItems(items, false)), (std::vector<std::string>{"h"}));
  EXPECT_EQ(names(LoginItem::applicationItems(items, true)), (std::vector<std::string>{"Mirvel", "h"}));
}

TEST_F(LoginItemTest, TheUsersListIsOpenedWhereThePlatformKeepsIt) {
  testdata::FakeWorkspace workspace;
  LoginItem::openAccountsPreferences(workspace, Roots::ofMac("/Users/x"));
  LoginItem::openAccountsPreferences(workspace, Roots::ofLinux("/home/x", {}));
  EXPECT_EQ(workspace.calls, (std::vector<std::string>{"open /System/Library/PreferencePanes/Accounts.prefPane",
                                                       "open /home/x/.config/autostart"}));
}

}  // namespace
}  // namespace mirvel
