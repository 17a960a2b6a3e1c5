#include "core/jobfile/Plist.h"

#include <gmock/gmock.h>

#include "core/jobfile/JobFile.h"
#include "support/TestData.h"

namespace mirvel::jobfile {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(PlistTest, AFileWithOnlyALabelHoldsNothingElse) {
  Plist expected;
  EXPECT_EQ(decoded(Dict{{"Label", ""}}), expected);
  EXPECT_EQ(expected.encode(), (Dict{{"Label", ""}}));
}

TEST(PlistTest, OnDemandFalseTurnsKeepAliveOn) {
  const Dict conditions{{"SuccessfulExit", false}};
  const struct {
    propertylist::Value keepAlive;
    bool onDemand;
    propertylist::Value written;
  } table[] = {
      {conditions, false, true},      {false, false, true}, {"unusable", false, true},
      {conditions, true, conditions}, {false, true, false},
  };
  for (const auto& row : table) {
    const auto plist = decoded(Dict{{"Label", "job"}, {"KeepAlive", row.keepAlive}, {"OnDemand", row.onDemand}});
    const Dict file = plist.encode();
    EXPECT_EQ(*file.find("KeepAlive"), row.written);
    EXPECT_EQ(*file.find("OnDemand"), propertylist::Value(row.onDemand));
  }
  EXPECT_FALSE(decoded(fileWith("OnDemand", false)).keepAlive);
  const auto kept = decoded(Dict{{"Label", "job"}, {"KeepAlive", conditions}, {"OnDemand", false}});
  EXPECT_THAT(kept.keepAlive->successfulExit, Optional(false)) << "the conditions stay in the record";
}

TEST(PlistTest, DerivedFieldsComeFromTheirKeys) {
  const auto plist = decoded(Dict{{"Label", "job"}, {"Program", "/bin/ls"}, {"ProgramArguments", List{"ls", "-l"}}});
  EXPECT_EQ(plist.run, "/bin/ls -l");
  EXPECT_THAT(plist.iconPath, Optional(std::string("/bin/ls")));
}

TEST(PlistTest, UnknownKeysGoBackAsTheyWereRead) {
  const Dict file{{"Label", "job"},
                  {"label", "differs by case"},
                  {"InetdCompatibility", Dict{{"Wait", true}}},
                  {"Moment", propertylist::Date{700000000}},
                  {"Deep", Dict{{"data", propertylist::Data{"\x01\x02"}}, {"list", List{Dict{}, 1, 2.5}}}}};
  auto plist = decoded(file);
  EXPECT_THAT(plist.unknownKeys, Optional(ElementsAre("Deep", "InetdCompatibility", "Moment", "label")));
  EXPECT_EQ(plist.encodeAll(), (Dict{{"Label", "job"}})) << "without the file as read there is nothing to put back";

  plist = loaded(file);
  EXPECT_EQ(plist.encodeAll(), file);
  plist.unknownKeys = {"Moment", "gone from the file"};
  EXPECT_EQ(plist.encodeAll(), (Dict{{"Label", "job"}, {"Moment", propertylist::Date{700000000}}}));
  EXPECT_FALSE(decoded(Dict{{"Label", "job"}, {"Nice", 1}}).unknownKeys);
}

TEST(PlistTest, EveryKeyOfTheTableIsReadIntoItsOwnField) {
  // Swapped rows would still make the round trip, so the fields are looked at by hand, one of each type.
  const auto plist = decoded(Dict{{"Label", "a"},
                                  {"StandardInPath", "in"},
                                  {"StandardOutPath", "out"},
                                  {"StandardErrorPath", "error"},
                                  {"LowPriorityIO", true},
                                  {"LowPriorityBackgroundIO", false},
                                  {"ExitTimeOut", 1},
                                  {"TimeOut", 2},
                                  {"ThrottleInterval", 3},
                                  {"LimitLoadFromHosts", List{"from"}},
                                  {"LimitLoadToHosts", List{"to"}},
                                  {"SoftResourceLimits", Dict{{"Core", 1}}},
                                  {"HardResourceLimits", Dict{{"Core", 2}}},
                                  {"HopefullyExitsFirst", true},
                                  {"HopefullyExitsLast", false}});
  Plist expected;
  expected.name = "a";
  expected.standardInPath = "in";
  expected.standardOutPath = "out";
  expected.standardErrorPath = "error";
  expected.lowPriorityIO = true;
  expected.lowPriorityBackgroundIO = false;
  expected.exitTimeOut = 1;
  expected.timeOut = 2;
  expected.throttleInterval = 3;
  expected.limitLoadFromHosts = std::vector<std::string>{"from"};
  expected.limitLoadToHosts = std::vector<std::string>{"to"};
  expected.softResourceLimits = ResourceLimits{.core = 1};
  expected.hardResourceLimits = ResourceLimits{.core = 2};
  expected.hopefullyExitsFirst = true;
  expected.hopefullyExitsLast = false;
  EXPECT_EQ(plist, expected);
}

TEST(PlistTest, KeysAndTextsMapBothWays) {
  const auto keys = Plist::knownKeys();
  ASSERT_EQ(keys.size(), 52U);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(Plist::codingKey(keys[i]), static_cast<Plist::CodingKeys>(i));
  }
  EXPECT_EQ(Plist::text(Plist::CodingKeys::inetdCompatibility), "inetdCompatibility");
  EXPECT_EQ(Plist::codingKey("label"), std::nullopt);
}

TEST(PlistTest, ABlankRecordRunsAtLoad) {
  EXPECT_EQ(Plist::blankPlist(), decoded(Dict{{"Label", ""}, {"RunAtLoad", true}}));
}

TEST(PlistTest, PublishedJobFilesKeepTheirMeaning) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  std::size_t files = 0;
  for (const auto& file : testdata::files(corpus, ".plist")) {
    auto plist = Plist::readTolerantly(testdata::bytes(file));
    if (!plist) continue;
    ++files;
    plist->dictionary.reset();  // what was read isn't at hand to be written as it stands
    const auto again = loaded(plist->encodeAll());
    EXPECT_EQ(again.encode(), plist->encode()) << file;
  }
  EXPECT_GT(files, 20U);
}

}  // namespace
}  // namespace mirvel::jobfile
