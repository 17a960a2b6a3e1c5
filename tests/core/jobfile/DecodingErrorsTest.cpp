#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "core/jobfile/JobFile.h"

namespace mirvel::jobfile {
namespace {

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
      // OnDemand is decoded together with KeepAlive, which depends on it.
      {Dict{{"OnDemand", 1}, {"RunAtLoad", 1}}, "OnDemand"},
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
      {"Label", WrongType},
      {List{Dict{{"Label", "job"}}}, WrongType},
      {true, WrongType},
  };
  for (const auto& [file, code] : table) {
    const auto plist = decode(file);
    ASSERT_FALSE(plist) << testing::PrintToString(file);
    EXPECT_EQ(plist.error().code, code) << testing::PrintToString(file);
  }
  EXPECT_EQ(Plist::readTolerantly("<plist><dict>").error().code, Malformed);
}

}  // namespace
}  // namespace mirvel::jobfile
