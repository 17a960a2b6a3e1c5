#include <gmock/gmock.h>

#include <cmath>
#include <sstream>

#include "core/jobfile/JobFile.h"

namespace mirvel::jobfile {
namespace {

using testing::ElementsAre;
using testing::Optional;

const propertylist::Value someDate = propertylist::Date{1};

TEST(DecodingErrorsTest, EveryStrictKeyRefusesOtherTypes) {
  const std::vector<std::pair<const char*, std::vector<propertylist::Value>>> table = {
      {"Disabled EnableTransactions EnablePressuredExit RunAtLoad InitGroups StartOnMount WaitForDebugger "
       "AbandonProcessGroup LowPriorityIO LowPriorityBackgroundIO LaunchOnlyOnce SessionCreate LegacyTimers Debug "
       "EnableGlobbing HopefullyExitsFirst HopefullyExitsLast OnDemand ServiceIPC MaterializeDatalessFiles",
       {"true", 0, 1, 1.0, List{}, Dict{}}},
      {"Label Program UserName GroupName WorkingDirectory StandardInPath StandardOutPath StandardErrorPath ProcessType "
       "RootDirectory",
       {true, 1, propertylist::Data{"x"}, someDate, List{"x"}, Dict{}}},
      {"ExitTimeOut ThrottleInterval StartInterval Nice TimeOut",
       {"1", true, 1.5, 9223372036854775808.0, std::nan(""),
        propertylist::Integer::fromUnsigned(std::uint64_t{1} << 63U), List{1}}},
      {"ProgramArguments WatchPaths QueueDirectories LimitLoadFromHosts LimitLoadToHosts", {"x", Dict{}, false}},
      {"EnvironmentVariables LimitLoadToHardware SoftResourceLimits HardResourceLimits MachServices Sockets "
       "LaunchEvents inetdCompatibility",
       {"x", true, List{}, 1}},
      {"LimitLoadToSessionType StartCalendarInterval", {true, 1, someDate}},
  };
  std::size_t keys = 0;
  for (const auto& [names, values] : table) {
    std::istringstream words(names);
    for (std::string name; words >> name; ++keys) {
      for (const propertylist::Value& value : values) {
        const auto plist = decode(fileWith(name, value));
        ASSERT_FALSE(plist) << name << " accepts " << testing::PrintToString(value);
        EXPECT_EQ(plist.error().keyPath, name);
      }
    }
  }
  EXPECT_EQ(keys, Plist::knownKeys().size() - 2) << "all keys but KeepAlive and Umask, which accept anything";
}

TEST(DecodingErrorsTest, MessagesNameTheValueAndItsKeyPath) {
  using enum Error::Code;
  const struct {
    const char* key;
    propertylist::Value value;
    Error::Code code;
    const char* text;
  } table[] = {
      {"RunAtLoad", "yes", WrongType, "RunAtLoad: holds \"yes\", a string, where a boolean belongs"},
      {"Nice", 1.5, WrongType, "Nice: holds 1.5, a real, where an integer belongs"},
      {"Nice", propertylist::Integer::fromUnsigned(std::uint64_t{1} << 63U), WrongType,
       "Nice: holds 9223372036854775808, an integer, where one up to 9223372036854775807 belongs"},
      {"Program", List{1, 2}, WrongType, "Program: holds an array of 2 where a string belongs"},
      {"ProgramArguments", List{"a", "b", 3}, WrongType,
       "ProgramArguments[2]: holds 3, an integer, where a string belongs"},
      {"EnvironmentVariables", Dict{{"A", "x"}, {"PATH", true}}, WrongType,
       "EnvironmentVariables.PATH: holds true, a boolean, where a string belongs"},
      {"LimitLoadToHardware", Dict{{"model", List{"a", 1}}}, WrongType,
       "LimitLoadToHardware.model[1]: holds 1, an integer, where a string belongs"},
      {"KeepAlive", Dict{{"SuccessfulExit", "x"}}, WrongType,
       "KeepAlive.SuccessfulExit: holds \"x\", a string, where a boolean belongs"},
      {"KeepAlive", Dict{{"PathState", Dict{{"/a", 1}}}}, WrongType,
       "KeepAlive.PathState./a: holds 1, an integer, where a boolean belongs"},
      {"KeepAlive", Dict{{"AfterInitialDemand", Dict{}}}, WrongType,
       "KeepAlive.AfterInitialDemand: holds a dictionary of 0 where a boolean belongs"},
      {"SoftResourceLimits", Dict{{"CPU", true}}, WrongType,
       "SoftResourceLimits.CPU: holds true, a boolean, where an integer belongs"},
      {"StartCalendarInterval", List{Dict{}, Dict{{"Minute", "30"}}}, NoForm,
       "StartCalendarInterval[1].Minute: Start calendar interval type error: \"30\", a string, where an integer "
       "belongs"},
      {"StartCalendarInterval", Dict{{"Hour", 1.5}}, NoForm,
       "StartCalendarInterval.Hour: Start calendar interval type error: 1.5, a real, where an integer belongs"},
      {"StartCalendarInterval", List{propertylist::Value(List{})}, NoForm,
       "StartCalendarInterval[0]: Start calendar interval type error: an array of 0 where a dictionary belongs"},
      {"LimitLoadToSessionType", 3, NoForm,
       "LimitLoadToSessionType: Limit load to session type error: 3, an integer, where a string or an array of "
       "strings belongs"},
      {"LimitLoadToSessionType", Dict{{"a", 1}}, NoForm,
       "LimitLoadToSessionType: Limit load to session type error: a dictionary of 1 where a string or an array of "
       "strings belongs"},
  };
  for (const auto& row : table) {
    const auto plist = decode(fileWith(row.key, row.value));
    ASSERT_FALSE(plist) << row.text;
    EXPECT_EQ(plist.error().text(), row.text);
    EXPECT_EQ(plist.error().code, row.code) << row.text;
  }
}

TEST(DecodingErrorsTest, TheFirstErrorInTheOrderOfTheKeysIsReported) {
  const struct {
    Dict others;
    const char* keyPath;
  } table[] = {
      {Dict{{"Debug", 1}, {"Program", 1}, {"WatchPaths", 1}}, "Program"},
      {Dict{{"OnDemand", 1}, {"RunAtLoad", 1}}, "RunAtLoad"},
      {Dict{{"OnDemand", 1}, {"EnableTransactions", 1}}, "EnableTransactions"},
      {Dict{{"SoftResourceLimits", Dict{{"Core", "x"}, {"CPU", "x"}, {"Data", "x"}}}}, "SoftResourceLimits.Core"},
      {Dict{{"KeepAlive", Dict{{"Crashed", 1}, {"SuccessfulExit", 1}}}}, "KeepAlive.SuccessfulExit"},
  };
  for (const auto& row : table) {
    Dict file = row.others;
    file.set("Label", "job");
    const auto plist = decode(file);
    ASSERT_FALSE(plist) << row.keyPath;
    EXPECT_EQ(plist.error().keyPath, row.keyPath);
  }
}

TEST(DecodingErrorsTest, AFileMustBeADictionaryWithALabel) {
  using enum Error::Code;
  const std::pair<propertylist::Value, Error::Code> table[] = {
      {Dict{}, MissingKey},
      {Dict{{"label", "job"}}, MissingKey},
      {Dict{{"Disabled", "a wrong type, but not the first error"}}, MissingKey},
      {Dict{{"Label", 1}}, WrongType},
      {"Label", WrongType},
      {List{Dict{{"Label", "job"}}}, WrongType},
      {true, WrongType},
  };
  for (const auto& [file, code] : table) {
    const auto plist = decode(file);
    ASSERT_FALSE(plist) << testing::PrintToString(file);
    EXPECT_EQ(plist.error().code, code) << testing::PrintToString(file);
    EXPECT_FALSE(Plist::readTolerantly(propertylist::writeBinary(file))) << testing::PrintToString(file);
  }
  EXPECT_EQ(Plist::readTolerantly("<plist><dict>").error().code, Malformed);
}

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
