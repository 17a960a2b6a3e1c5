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

TEST(PlistTest, UnknownKeysGoBackAsTheyWereRead) {
  const Dict file{{"Label", "job"},
                  {"label", "differs by case"},
                  {"InetdCompatibility", Dict{{"Wait", true}}},
                  {"Moment", propertylist::Date{700000000}},
                  {"Deep", Dict{{"data", propertylist::Data{"\x01\x02"}}, {"list", List{Dict{}, 1, 2.5}}}}};
  auto plist = decoded(file);
  EXPECT_THAT(plist.unknownKeys, Optional(ElementsAre("Deep", "InetdCompatibility", "Moment", "label")));
  EXPECT_EQ(plist.encodeAll(), (Dict{{"Label", "job"}})) << "without the file there is nothing to write back";

  plist = loaded(file);
  EXPECT_EQ(plist.encodeAll(), file);
  plist.unknownKeys = {"Moment", "gone from the file"};
  EXPECT_EQ(plist.encodeAll(), (Dict{{"Label", "job"}, {"Moment", propertylist::Date{700000000}}}));
  EXPECT_FALSE(decoded(Dict{{"Label", "job"}, {"Nice", 1}}).unknownKeys);
}

TEST(PlistTest, KeysOfOneTypeAreReadIntoTheirOwnFields) {
  // Swapped rows of the table would pass every round trip.
  const auto plist = decoded(Dict{{"Label", "a"},
                                  {"StandardInPath", "in"},
                                  {"StandardOutPath", "out"},
                                  {"StandardErrorPath", "error"},
                                  {"LowPriorityIO", true},
                                  {"LowPriorityBackgroundIO", false},
                                  {"HopefullyExitsFirst", true},
                                  {"HopefullyExitsLast", false},
                                  {"ExitTimeOut", 1},
                                  {"TimeOut", 2},
                                  {"ThrottleInterval", 3},
                                  {"LimitLoadFromHosts", List{"from"}},
                                  {"LimitLoadToHosts", List{"to"}},
                                  {"SoftResourceLimits", Dict{{"Core", 1}}},
                                  {"HardResourceLimits", Dict{{"Core", 2}}}});
  EXPECT_THAT((std::vector{plist.standardInPath, plist.standardOutPath, plist.standardErrorPath}),
              ElementsAre("in", "out", "error"));
  EXPECT_THAT((std::vector{plist.lowPriorityIO, plist.lowPriorityBackgroundIO, plist.hopefullyExitsFirst,
                           plist.hopefullyExitsLast}),
              ElementsAre(true, false, true, false));
  EXPECT_THAT((std::vector{plist.exitTimeOut, plist.timeOut, plist.throttleInterval}), ElementsAre(1, 2, 3));
  EXPECT_THAT(*plist.limitLoadFromHosts, ElementsAre("from"));
  EXPECT_THAT(*plist.limitLoadToHosts, ElementsAre("to"));
  EXPECT_EQ(*plist.softResourceLimits, ResourceLimits{.core = 1});
  EXPECT_EQ(*plist.hardResourceLimits, ResourceLimits{.core = 2});
}

TEST(PlistTest, KeysAndTextsMapBothWays) {
  const auto keys = Plist::knownKeys();
  ASSERT_EQ(keys.size(), 52U);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(Plist::codingKey(keys[i]), static_cast<Plist::CodingKeys>(i));
  }
  EXPECT_EQ(Plist::text(Plist::CodingKeys::InetdCompatibility), "inetdCompatibility");
  EXPECT_EQ(Plist::codingKey("label"), std::nullopt);
}

TEST(PlistTest, PublishedJobFilesKeepTheirMeaning) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  std::size_t files = 0;
  for (const auto& file : testdata::files(corpus, ".plist")) {
    auto plist = Plist::readTolerantly(testdata::bytes(file));
    if (!plist) continue;
    ++files;
    plist->dictionary.reset();  // so that the values are encoded instead of copied
    const auto again = loaded(plist->encodeAll());
    EXPECT_EQ(again.encode(), plist->encode()) << file;
  }
  EXPECT_GT(files, 20U);
}

}  // namespace
}  // namespace mirvel::jobfile
