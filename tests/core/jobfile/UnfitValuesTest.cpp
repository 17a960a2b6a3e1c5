#include <gmock/gmock.h>

#include "core/jobfile/JobFile.h"

namespace mirvel::jobfile {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(UnfitValuesTest, AValueThatDoesntFitItsKeyHidesNothingElse) {
  const std::pair<const char*, propertylist::Value> table[] = {
      {"Disabled", Dict{{"#IfFeature", "x"}}},
      {"Program", List{"/bin/ls"}},
      {"ProgramArguments", List{"/bin/ls", 1}},
      {"RunAtLoad", "yes"},
      {"RunAtLoad", 1},
      {"Nice", "5"},
      {"KeepAlive", "yes"},
      {"Umask", "u=rwx"},
      {"Umask", true},
      {"LimitLoadToSessionType", 5},
      {"LimitLoadToSessionType", List{}},
      {"StartCalendarInterval", true},
      {"Sockets", true},
      {"OnDemand", 0},
  };
  for (const auto& [key, value] : table) {
    SCOPED_TRACE(key);
    const Dict file{{"Label", "job"}, {"Odd", 1}, {key, value}, {"StandardOutPath", "/out"}};
    Plist record = loaded(file);
    EXPECT_THAT(record.unknownKeys, Optional(testing::UnorderedElementsAre("Odd", key)));
    EXPECT_EQ(record.encode(), (Dict{{"Label", "job"}, {"StandardOutPath", "/out"}}));
    record.standardOutPath = "/other";
    Dict changed = file;
    changed.set("StandardOutPath", "/other");
    EXPECT_EQ(record.encodeAll(), changed);
    record.unknownKeys = {"Odd"};
    (void)changed.remove(key);
    EXPECT_EQ(record.encodeAll(), changed) << "deleted";
  }
}

TEST(UnfitValuesTest, OnlyALabelIsNeeded) {
  for (const propertylist::Value& file :
       std::vector<propertylist::Value>{Dict{}, Dict{{"Label", 1}}, Dict{{"Label", List{"a"}}}, List{}, "Label"}) {
    EXPECT_FALSE(Plist::readTolerantly(propertylist::writeBinary(file)));
  }
}

TEST(UnfitValuesTest, AnEnteredValueTakesThePlaceOfOneThatDidntFit) {
  Plist record = loaded(Dict{{"Label", "job"}, {"RunAtLoad", "yes"}, {"Sockets", 1}});
  record.runAtLoad = true;
  EXPECT_EQ(record.encodeAll(), (Dict{{"Label", "job"}, {"RunAtLoad", true}, {"Sockets", 1}}));
  record.runAtLoad.reset();
  EXPECT_EQ(record.encodeAll(), (Dict{{"Label", "job"}, {"RunAtLoad", "yes"}, {"Sockets", 1}}));
}

const Dict nested{
    {"Label", "job"},
    {"EnvironmentVariables", Dict{{"A", "a"}, {"B", 1}}},
    {"KeepAlive", Dict{{"Crashed", true}, {"SuccessfulExit", "no"}, {"Odd", 1}}},
    {"LaunchEvents", Dict{{"s", Dict{{"e", Dict{{"k", 1}, {"deep", List{Dict{{"x", 1}}}}}}}}}},
    {"MachServices", Dict{{"a", true}, {"b", 5}}},
    {"Sockets",
     Dict{{"L", List{Dict{{"SockType", "stream"}}, Dict{{"SockPathName", "/s"}, {"SockPathMode", "0666"}}}}}},
    {"StartCalendarInterval", List{Dict{{"Hour", 3}, {"WeekDay", 1}}, Dict{{"Hour", 4}, {"Minute", "x"}}}},
};

TEST(UnfitValuesTest, BelowAKeyTheyHideNothingElseEither) {
  Plist record = loaded(nested);
  EXPECT_EQ(record.encode(),
            (Dict{{"Label", "job"},
                  {"EnvironmentVariables", Dict{{"A", "a"}}},
                  {"KeepAlive", Dict{{"Crashed", true}}},
                  {"LaunchEvents", Dict{{"s", Dict{{"e", Dict{{"k", 1}}}}}}},
                  {"MachServices", Dict{{"a", true}}},
                  {"Sockets", Dict{{"L", List{Dict{{"SockType", "stream"}}, Dict{{"SockPathName", "/s"}}}}}},
                  {"StartCalendarInterval", List{Dict{{"Hour", 3}}, Dict{{"Hour", 4}}}}}));
  EXPECT_EQ(record.unknownKeys, std::nullopt);
  EXPECT_EQ(record.encodeAll(), nested);
}

std::vector<std::string> opaqueTexts(const Plist& record) {
  std::vector<std::string> texts;
  for (const auto& value : record.opaqueValues()) texts.push_back(value.text());
  return texts;
}

TEST(UnfitValuesTest, BelowAKeyTheyAreReportedAndCanBeRemoved) {
  Plist record = loaded(nested);
  EXPECT_THAT(opaqueTexts(record), ElementsAre("EnvironmentVariables.B", "KeepAlive.Odd", "KeepAlive.SuccessfulExit",
                                               "LaunchEvents.s.e.deep", "MachServices.b", "Sockets.L[1].SockPathMode",
                                               "StartCalendarInterval[0].WeekDay", "StartCalendarInterval[1].Minute"));
  record.keepAlive->successfulExit = false;
  record.removedValues = {
      {"Sockets", "L", "[1]", "SockPathMode"}, {"KeepAlive", "Odd"}, {"gone"}, {"Sockets", "[7]", "x"}};
  EXPECT_THAT(opaqueTexts(record), ElementsAre("EnvironmentVariables.B", "LaunchEvents.s.e.deep", "MachServices.b",
                                               "StartCalendarInterval[0].WeekDay", "StartCalendarInterval[1].Minute"));
  Dict expected = nested;
  expected.set("KeepAlive", Dict{{"Crashed", true}, {"SuccessfulExit", false}});
  expected.set("Sockets", Dict{{"L", List{Dict{{"SockType", "stream"}}, Dict{{"SockPathName", "/s"}}}}});
  EXPECT_EQ(record.encodeAll(), expected);
}

TEST(UnfitValuesTest, InAListOfIntervalsTheyBelongToTheirElement) {
  const std::string key = "StartCalendarInterval";
  Plist record = loaded(fileWith(key, List{Dict{{"Hour", 3}, {"X", 1}}, "text", Dict{{"Hour", 4}, {"Y", 1}}}));
  EXPECT_THAT(opaqueTexts(record), ElementsAre(key + "[0].X", key + "[1]", key + "[2].Y"));
  auto& intervals = record.startCalendarInterval->intervals;
  intervals.erase(intervals.begin());
  EXPECT_THAT(opaqueTexts(record), ElementsAre(key + "[1]", key + "[2].Y"));
  EXPECT_EQ(record.encodeAll(), fileWith(key, List{"text", Dict{{"Hour", 4}, {"Y", 1}}}));
  record.removedValues = {{key, "[1]"}, {key, "[2]", "Y"}};
  EXPECT_THAT(opaqueTexts(record), ElementsAre());
  EXPECT_EQ(record.encodeAll(), fileWith(key, List{Dict{{"Hour", 4}}}));
  record.startCalendarInterval.reset();
  EXPECT_EQ(record.encodeAll(), (Dict{{"Label", "job"}}));
  record.removedValues.clear();
  EXPECT_THAT(opaqueTexts(record), ElementsAre(key + "[1]"));
  EXPECT_EQ(record.encodeAll(), fileWith(key, List{"text"}));
}

}  // namespace
}  // namespace mirvel::jobfile
