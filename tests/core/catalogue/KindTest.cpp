#include "core/catalogue/Kind.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/catalogue/KindSection.h"
#include "core/catalogue/KindTexts.h"
#include "core/text/Bidirectional.h"
#include "support/FakeWorkspace.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using testdata::FakeWorkspace;
using testdata::TemporaryFolder;

TEST(KindTest, EachKindHasItsFolderAndPermissions) {
  const Roots roots{"/home", "/user", "/support", "/local", "/system", "/defaults"};
  const struct {
    int rawValue;
    const char* name;
    std::optional<std::filesystem::path> folder;
    bool isLaunchd;
    bool isEditable;
    bool isEditableByPermission;
  } table[] = {
      {0, "userAgent", "/user/LaunchAgents", true, true, true},
      {1, "localAgent", "/local/LaunchAgents", true, true, true},
      {2, "localDaemon", "/local/LaunchDaemons", true, true, true},
      {3, "loginItemSystemPreferences", std::nullopt, false, false, false},
      {4, "loginItemApplication", std::nullopt, false, false, false},
      {5, "localStartupItem", "/local/StartupItems", false, false, false},
      {6, "systemAgent", "/system/LaunchAgents", true, false, true},
      {7, "systemDaemon", "/system/LaunchDaemons", true, false, true},
      {8, "systemStartupItem", "/system/StartupItems", false, false, false},
      {9, "privilegedHelperTool", "/local/PrivilegedHelperTools", false, false, false},
      {10, "extraFolder", std::nullopt, true, false, false},
  };
  ASSERT_EQ(std::size(table), Kind::allCases.size());
  for (const auto& row : table) {
    const auto kind = Kind::fromRawValue(row.rawValue);
    ASSERT_TRUE(kind) << row.rawValue;
    EXPECT_EQ(Kind::allCases.at(static_cast<std::size_t>(row.rawValue)), *kind);
    EXPECT_EQ(kind->name(), row.name);
    EXPECT_EQ(kind->folderURL(roots), row.folder) << row.name;
    EXPECT_EQ(kind->isLaunchd(), row.isLaunchd) << row.name;
    EXPECT_EQ(kind->canBeLoaded(), row.isLaunchd && row.folder) << row.name;
    EXPECT_EQ(kind->isAgentOfEveryone(), row.rawValue == 1 || row.rawValue == 6) << row.name;
    EXPECT_EQ(kind->isAgent(), kind->isAgentOfEveryone() || row.rawValue == 0) << row.name;
    EXPECT_EQ(kind->isEditable(false), row.isEditable) << row.name;
    EXPECT_EQ(kind->isEditable(true), row.isEditableByPermission) << row.name;
    const auto& visible = Kind::visibleKinds;
    EXPECT_EQ(std::count(visible.begin(), visible.end(), *kind), kind->isSystem() ? 0 : 1) << row.name;
  }
  EXPECT_FALSE(Kind::fromRawValue(-1));
  EXPECT_FALSE(Kind::fromRawValue(11));
}

class KindTextsTest : public testing::Test {
 protected:
  TemporaryFolder folder;
  Defaults defaults{folder.path() / "preferences.plist"};
  FakeWorkspace workspace;
  const Localize english{"en"};
};

TEST_F(KindTextsTest, TitlesNameTheUserOrTheKind) {
  KindTexts texts(english, defaults, workspace);
  const std::pair<Kind, const char*> table[] = {
      {Kind::userAgent, "Ada Lovelace"},
      {Kind::localAgent, "Everyone"},
      {Kind::localDaemon, "root"},
      {Kind::loginItemSystemPreferences, "Login Items – System Settings"},
      {Kind::loginItemApplication, "Login Items – Application"},
      {Kind::localStartupItem, "StartupItems"},
      {Kind::systemAgent, "Agents – System"},
      {Kind::systemDaemon, "Daemons – System"},
      {Kind::systemStartupItem, "StartupItems – System"},
      {Kind::privilegedHelperTool, "PrivilegedHelperTools"},
      {Kind::extraFolder, "Folders"},
  };
  for (const auto& [kind, title] : table) EXPECT_EQ(texts.title(kind), title);
}

TEST_F(KindTextsTest, TheSettingsApplicationProvidesNameAndIcon) {
  workspace.applications = {{"System Settings", "/Applications/System Settings.app"}};
  workspace.displayNames = {{"/Applications/System Settings.app", "Systemeinstellungen.app"}};
  KindTexts texts(english, defaults, workspace);
  EXPECT_EQ(texts.title(Kind::loginItemSystemPreferences), "Login Items – Systemeinstellungen");
  EXPECT_EQ(texts.icon(Kind::loginItemSystemPreferences), Image::iconOfPath("/Applications/System Settings.app"));
}

TEST_F(KindTextsTest, TheLockIconFollowsTheSetting) {
  KindTexts texts(english, defaults, workspace);
  EXPECT_EQ(texts.icon(Kind::systemAgent), Image::named("changes-prevent"));
  ASSERT_TRUE(defaults.set(Defaults::Key::editSystemJobs, true));
  EXPECT_EQ(texts.icon(Kind::systemAgent), Image::named("changes-allow"));
}

TEST_F(KindTextsTest, PartsOfATitleKeepTheirOrderInRightToLeftText) {
  EXPECT_EQ(bidirectionalString({"Agents", "System"}, " – ", false), "Agents – System");
  EXPECT_EQ(bidirectionalString({"Agents", "System"}, " – ", true), "\u200F\u2068Agents\u2069 – \u2068System\u2069");
}

std::string text(const Sections& sections) {
  std::string result;
  for (const Kind::Section& section : sections) {
    result += std::string(section.kind.name()) + ":";
    for (const auto& job : section.jobs) result += job->name;
    result += " ";
  }
  return result;
}

TEST(KindSectionTest, JobsAreGroupedByKindInTheOrderOfTheCatalogue) {
  const auto job = [](Kind kind, const char* name) {
    return std::make_shared<Job>(kind, name, "", name, URL::file("/job"));
  };
  const Jobs jobs{
      job(Kind::privilegedHelperTool, "p"),       job(Kind::systemStartupItem, "s"), job(Kind::userAgent, "b"),
      job(Kind::loginItemApplication, "l"),       job(Kind::userAgent, "a"),         job(Kind::systemDaemon, "d"),
      job(Kind::loginItemSystemPreferences, "o"), job(Kind::systemAgent, "g")};
  EXPECT_EQ(text(makeSections(jobs, false)),
            "userAgent:ba loginItemSystemPreferences:o loginItemApplication:l privilegedHelperTool:p ");
  EXPECT_EQ(text(makeSections(jobs, true)),
            "userAgent:ba loginItemSystemPreferences:o loginItemApplication:l systemAgent:g systemDaemon:d "
            "systemStartupItem:s privilegedHelperTool:p ");
  EXPECT_EQ(text(makeSections({job(Kind::systemAgent, "g")}, false)), "");
  EXPECT_EQ(text(makeSections({}, true)), "");
}

}  // namespace
}  // namespace mirvel
