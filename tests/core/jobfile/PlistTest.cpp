#include "core/jobfile/Plist.h"

#include <gmock/gmock.h>

#include "core/jobfile/JobFile.h"
#include "core/jobfile/MergeIntoFile.h"

namespace mirvel::jobfile {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(PlistTest, OnDemandFalseKeepsAJobAliveAndChangesNothingElse) {
  const Dict conditions{{"SuccessfulExit", false}};
  const struct {
    Dict keys;
    bool isAlwaysKeptAlive;
  } table[] = {
      {{}, false},
      {{{"OnDemand", false}}, true},
      {{{"OnDemand", true}}, false},
      {{{"KeepAlive", true}}, true},
      {{{"KeepAlive", false}}, false},
      {{{"KeepAlive", conditions}}, false},
      {{{"KeepAlive", conditions}, {"OnDemand", false}}, true},
      {{{"KeepAlive", conditions}, {"OnDemand", true}}, false},
      {{{"KeepAlive", false}, {"OnDemand", false}}, true},
  };
  for (const auto& row : table) {
    Dict file = row.keys;
    file.set("Label", "job");
    const auto plist = decoded(file);
    EXPECT_EQ(plist.isAlwaysKeptAlive(), row.isAlwaysKeptAlive);
    EXPECT_EQ(plist.encode(), file);
  }
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
  plist.unknownKeys = {"Moment", "gone from the file"};
  EXPECT_EQ(plist.encodeAll(), (Dict{{"Label", "job"}, {"Moment", propertylist::Date{700000000}}}));
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

TEST(MergeIntoFileTest, OnlyEditsComeFromTheRecord) {
  const Dict x{{"x", 1}};
  const Dict odd{{"x", 1}, {"Odd", "kept"}};
  const Dict other{{"x", 2}, {"Other", "kept"}};
  const struct {
    const char* what;
    propertylist::Value file, read, edited, merged;
  } table[] = {
      {"another form of the same value", 10.0, 10, 10, 10.0},
      {"an edited value", 10.0, 10, 11, 11},
      {"another type", odd, x, true, true},
      {"an entry that isn't known", odd, x, Dict{{"x", 5}}, Dict{{"x", 5}, {"Odd", "kept"}}},
      {"a new entry", odd, x, Dict{{"x", 1}, {"y", 2}}, Dict{{"x", 1}, {"y", 2}, {"Odd", "kept"}}},
      {"a removed entry", odd, x, Dict{}, Dict{{"Odd", "kept"}}},
      {"an entry that takes the place of one that wasn't read", Dict{{"x", "bad"}, {"y", "bad"}}, Dict{},
       Dict{{"x", 1}}, Dict{{"x", 1}, {"y", "bad"}}},
      {"an entry that the record adds by itself", Dict{}, x, x, Dict{}},
      {"deep below", Dict{{"a", Dict{{"b", odd}}}}, Dict{{"a", Dict{{"b", x}}}},
       Dict{{"a", Dict{{"b", Dict{{"x", 3}}}}}}, Dict{{"a", Dict{{"b", Dict{{"x", 3}, {"Odd", "kept"}}}}}}},
      {"elements in their places", List{odd, other}, List{x, Dict{{"x", 2}}}, List{x, Dict{{"x", 3}}},
       List{odd, Dict{{"x", 3}, {"Other", "kept"}}}},
      {"an element at the end", List{odd}, List{x}, List{x, x}, List{odd, x}},
      {"an element at the beginning", List{odd}, List{x}, List{Dict{{"x", 9}}, x}, List{Dict{{"x", 9}}, odd}},
      {"an element between", List{odd, other}, List{x, Dict{{"x", 2}}}, List{x, 7, Dict{{"x", 2}}},
       List{odd, 7, other}},
      {"a removed element", List{odd, other}, List{x, Dict{{"x", 2}}}, List{Dict{{"x", 2}}}, List{other}},
      {"all elements removed", List{odd, other}, List{x, Dict{{"x", 2}}}, List{}, List{}},
      {"one value becomes several", odd, x, List{x, Dict{{"x", 2}}}, List{odd, Dict{{"x", 2}}}},
      {"several become one", List{odd, other}, List{x, Dict{{"x", 2}}}, Dict{{"x", 2}}, other},
      {"a list that was read in part", List{"a", odd}, List{x}, List{Dict{{"x", 2}}}, List{Dict{{"x", 2}}}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(
        propertylist::Value(mergeIntoFile(Dict{{"key", row.file}}, Dict{{"key", row.read}}, Dict{{"key", row.edited}})),
        propertylist::Value(Dict{{"key", row.merged}}))
        << row.what;
  }
}

}  // namespace
}  // namespace mirvel::jobfile
