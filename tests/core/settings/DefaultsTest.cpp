#include "core/settings/Defaults.h"

#include <gmock/gmock.h>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using propertylist::Value;
using testdata::TemporaryFolder;

std::string xmlOf(const Value& value) {
  return *propertylist::writeXml(value);
}

Value content(const fs::path& file) {
  const auto document = propertylist::read(testdata::bytes(file));
  return document ? document->value() : Value("unreadable");
}

TEST(DefaultsTest, EveryKeyHasItsRegisteredDefault) {
  const TemporaryFolder folder;
  const Defaults defaults(folder.path() / "none");
  const std::vector<std::tuple<std::string, Defaults::Value, Defaults::Value>> rows{
      {"ShowSystemJobs", false, defaults.showSystemJobs()},
      {"ListMirvelHelper", false, defaults.showInternalHelpers()},
      {"AutomaticHelp", true, defaults.automaticHelp()},
      {"AutomaticEnvPath", true, defaults.automaticPATH()},
      {"RunAgent", false, defaults.runAgent()},
      {"NumberOfSavedRevisions", std::int64_t{10}, defaults.numberOfSavedRevisions()},
      {"ViewMode", std::int64_t{0}, defaults.selectedMode()},
      {"Exceptions", std::string_view(), std::string_view()},
      {"PreferFullScreen", false, defaults.preferFullScreen()},
      {"PreferencesTab", std::int64_t{0}, defaults.integer("PreferencesTab")},
      {"Resume", true, defaults.boolean("Resume")},
      {"HasManuallyChangedTheme", false, defaults.hasManuallyChangedTheme()},
      {"ShowTitleBar", false, defaults.showTitleBar()},
      {"NotificationTab", std::int64_t{0}, defaults.notificationTab()},
      {"LogLength", std::int64_t{0}, defaults.logLength()},
      {"LogPeriod", std::int64_t{1}, defaults.logPeriod()},
      {"FirstMirvelLaunch", true, defaults.firstMirvelLaunch()},
      {"IWantToEditSystemJobsAndIUnderstandTheRisksAndITakeFullResponsibility", false, defaults.editSystemJobs()},
      {"AutomaticallyCheckForUpdate", true, defaults.automaticallyCheckForUpdate()},
      {"ShowInvalidData", true, defaults.showInvalidData()},
  };
  for (const auto& [key, value, read] : rows) {
    EXPECT_EQ(Defaults::registered(key), value) << key;
    EXPECT_EQ(read, value) << key;
  }
  EXPECT_EQ(Defaults::registered("AlertComplexWhat"), std::nullopt);
  EXPECT_FALSE(defaults.suppressAlertComplexRun());
  EXPECT_FALSE(fs::exists(folder.path() / "none"));
}

TEST(DefaultsTest, WritingChangesOneKeyImmediately) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("p.plist", xmlOf(Dictionary{{"LogLength", 4}, {"Other", "kept"}}));
  Defaults one(file), two(file);
  EXPECT_EQ(one.logLength(), 4);
  ASSERT_TRUE(two.setLogLength(2));
  EXPECT_EQ(one.logLength(), 2);
  ASSERT_TRUE(one.negate("ShowInvalidData"));
  ASSERT_TRUE(two.setShowSystemJobs(true));
  ASSERT_TRUE(one.negate("ShowSystemJobs"));
  EXPECT_EQ(
      content(file),
      Value(Dictionary{{"LogLength", 2}, {"Other", "kept"}, {"ShowInvalidData", false}, {"ShowSystemJobs", false}}));
}

TEST(DefaultsTest, ValuesOfTheWrongTypeAreIgnoredAndKept) {
  const TemporaryFolder folder;
  const Dictionary odd{{"AutomaticHelp", "NO"},
                       {"NumberOfSavedRevisions", propertylist::Integer::fromUnsigned(UINT64_MAX)},
                       {"LogPeriod", true},
                       {"ShowInvalidData", 0}};
  const fs::path file = folder.write("p.plist", xmlOf(odd));
  Defaults defaults(file);
  EXPECT_TRUE(defaults.automaticHelp());
  EXPECT_EQ(defaults.numberOfSavedRevisions(), 10);
  EXPECT_EQ(defaults.logPeriod(), 1);
  EXPECT_TRUE(defaults.showInvalidData());
  ASSERT_TRUE(defaults.setLogPeriod(2));
  Dictionary expected = odd;
  expected.set("LogPeriod", 2);
  EXPECT_EQ(content(file), Value(expected));
}

TEST(DefaultsTest, ASettingThatCantBeWrittenIsInEffectUntilTheEndAndReported) {
  const TemporaryFolder folder;
  fs::create_directories(folder.path() / "p.plist");
  StoreTroubles troubles;
  int reports = 0;
  troubles.setListener([&](const StoreTrouble&) { ++reports; });
  Defaults defaults(folder.path() / "p.plist", Defaults::Damaged::SetAside, &troubles);
  EXPECT_FALSE(defaults.negate("AutomaticHelp"));
  EXPECT_FALSE(defaults.automaticHelp());
  EXPECT_FALSE(defaults.negate("AutomaticHelp"));
  EXPECT_TRUE(defaults.automaticHelp());
  EXPECT_EQ(reports, 1);
}

TEST(DefaultsTest, ADamagedFileIsLeftOnRequest) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("p.plist", "text");
  Defaults defaults(file, Defaults::Damaged::Leave);
  EXPECT_TRUE(defaults.automaticHelp());
  const auto written = defaults.setAutomaticHelp(false);
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().code, Error::Code::Malformed);
  EXPECT_EQ(testdata::bytes(file), "text");
}

}  // namespace
}  // namespace mirvel
