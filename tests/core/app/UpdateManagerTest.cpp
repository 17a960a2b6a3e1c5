#include "core/app/UpdateManager.h"

#include <gmock/gmock.h>

#include "core/propertylist/Writer.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FakeDownloads final : public Downloads {
 public:
  std::vector<std::string> addresses;
  Result<std::string> answer = std::string();

  void get(const std::string& address, Reply reply) override {
    addresses.push_back(address);
    reply(answer);
  }
};

class UpdateManagerTest : public testdata::ProgramFixture {
 protected:
  static std::string feedOf(const std::string& version, const std::string& address = "https://mirvel.app/get") {
    return *propertylist::writeXml(Dictionary{{"Mirvel", Dictionary{{"Version", version}, {"URL", address}}}});
  }

  FakeDownloads downloads;
  UpdateManager updates{foundation.localize, platform, program().shell, downloads, "1.9"};
};

TEST_F(UpdateManagerTest, ANewVersionIsOffered) {
  downloads.answer = feedOf("1.10");
  updates.check("Mirvel", false);
  EXPECT_THAT(downloads.addresses, ElementsAre("https://mirvel.app/updates.plist"));
  ASSERT_THAT(interface.sheets, SizeIs(1));
  EXPECT_EQ(interface.sheets.front().first.message, "Mirvel 1.10 is available");
  EXPECT_EQ(interface.sheets.front().first.returnAnswer(), Interface::defaultButton);
  EXPECT_EQ(interface.sheets.front().first.escapeAnswer(), Interface::alternateButton);
  interface.answerSheet(Interface::alternateButton);
  EXPECT_THAT(workspace.calls, IsEmpty());
  EXPECT_FALSE(updates.wasPageShown());
  updates.check("Mirvel", true);
  interface.answerSheet(Interface::defaultButton);
  EXPECT_THAT(workspace.calls, ElementsAre("openAddress https://mirvel.app/get"));
  EXPECT_TRUE(updates.wasPageShown());
}

TEST_F(UpdateManagerTest, OtherResultsAreShownOnlyAfterAManualCheck) {
  struct Row {
    std::string why;
    Result<std::string> feed;
    bool isError;
  };
  const Row table[] = {
      {"the same version", feedOf("1.9"), false},
      {"an older one", feedOf("1.8.7"), false},
      {"no network", Error{.code = Error::Code::Io, .message = "no network"}, true},
      {"no list", std::string("<html>404</html>"), true},
      {"another program's", *propertylist::writeXml(Dictionary{{"Other", Dictionary{}}}), true},
      {"a page that isn't safe", feedOf("2.0", "http://mirvel.app"), true},
      {"a program instead of a page", feedOf("2.0", "file:///bin/sh"), true},
  };
  for (const Row& row : table) {
    SCOPED_TRACE(row.why);
    downloads.answer = row.feed;
    interface.errors.clear();
    interface.sheets.clear();
    updates.check("Mirvel", false);
    EXPECT_THAT(interface.errors, IsEmpty());
    EXPECT_THAT(interface.sheets, IsEmpty());
    updates.check("Mirvel", true);
    EXPECT_EQ(interface.errors.size(), row.isError ? 1U : 0U);
    EXPECT_EQ(interface.sheets.size(), row.isError ? 0U : 1U);
  }
}

TEST_F(UpdateManagerTest, AnAutomaticOfferDoesntCoverAnotherSheet) {
  testdata::RecordingShell shell(program());
  shell.isSheetUp = true;
  downloads.answer = feedOf("2.0");
  updates.check("Mirvel", false);
  EXPECT_THAT(interface.sheets, IsEmpty());
}

TEST_F(UpdateManagerTest, VersionsAreComparedNumberByNumber) {
  const std::pair<const char*, const char*> newerThan[] = {
      {"1.10", "1.9"}, {"2", "1.9.9"}, {"1.0.1", "1"}, {"1.0.0.1", "1.0"}, {"0.2", "0.1.9"}};
  for (const auto& [newer, older] : newerThan) {
    EXPECT_TRUE(UpdateManager::isNewer(newer, older)) << newer;
    EXPECT_FALSE(UpdateManager::isNewer(older, newer)) << newer;
  }
  EXPECT_FALSE(UpdateManager::isNewer("1.0", "1"));
  EXPECT_FALSE(UpdateManager::isNewer("", "1"));
}

}  // namespace
}  // namespace mirvel
