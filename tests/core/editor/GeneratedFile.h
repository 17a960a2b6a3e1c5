#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "core/jobfile/JobFile.h"
#include "core/propertylist/Value.h"

/// Job files made at random: each has about two thirds of the keys, with values of right and of wrong types.
namespace mirvel::generated {

using jobfile::Dict;
using jobfile::List;
using propertylist::Integer;

/// Values that fit no key, or few.
inline const List oddValues = {"",
                               "odd",
                               true,
                               7,
                               Integer::fromUnsigned(UINT64_MAX),
                               INT64_MIN,
                               0.1,
                               propertylist::Data{std::string("\0\xFF", 2)},
                               propertylist::Date{86'400},
                               List(),
                               Dict(),
                               List{1, "x", List{2.5}},
                               Dict{{"", List{true}}, {"Odd", Dict{{"Deep", List{Dict{{"er", -1}}}}}}}};

struct GeneratedKeys {
  std::vector<std::string> keys;
  List values;
};

inline const GeneratedKeys generatedKeys[] = {
    {{"Disabled",           "RunAtLoad",
      "StartOnMount",       "InitGroups",
      "EnableTransactions", "EnablePressuredExit",
      "WaitForDebugger",    "AbandonProcessGroup",
      "LowPriorityIO",      "LowPriorityBackgroundIO",
      "LaunchOnlyOnce",     "SessionCreate",
      "LegacyTimers",       "Debug",
      "EnableGlobbing",     "HopefullyExitsFirst",
      "HopefullyExitsLast", "OnDemand",
      "ServiceIPC",         "MaterializeDatalessFiles"},
     {true, false}},
    {{"Program", "UserName", "GroupName", "WorkingDirectory", "StandardInPath", "StandardOutPath", "StandardErrorPath",
      "ProcessType", "RootDirectory"},
     {"", "/a b", "<&>"}},
    {{"ExitTimeOut", "ThrottleInterval", "Nice", "TimeOut", "StartInterval"}, {5, 5.0, -3, 2.5}},
    {{"Umask"}, {18, 18.0, "022", "18"}},
    {{"ProgramArguments", "WatchPaths", "QueueDirectories", "LimitLoadFromHosts", "LimitLoadToHosts"},
     {List{"/bin/echo", "", "a \"b\"", "it's"}, List{""}, List()}},
    {{"LimitLoadToSessionType"}, {"Aqua", List{"Aqua"}, List{"Aqua", "Odd"}, List()}},
    {{"LimitLoadToHardware"},
     {Dict{{"machine", List()}, {"model", List{"A", "", "B"}}, {"odd", 5}, {"mixed", List{1, "x"}}}, Dict()}},
    {{"KeepAlive"},
     {true, false,
      Dict{{"Crashed", true},
           {"PathState", Dict{{"/a", true}, {"/b", "odd"}}},
           {"OtherJobEnabled", Dict()},
           {"SuccessfulExit", "odd"},
           {"Own", List{1, 2.0}}}}},
    {{"EnvironmentVariables"}, {Dict{{"", "none"}, {"A", "1"}, {"B", 5}, {"E", ""}}, Dict{{"B", 5}}, Dict()}},
    {{"SoftResourceLimits", "HardResourceLimits"}, {Dict{{"CPU", 60.0}, {"Core", 0}, {"Odd", 1}, {"Stack", "x"}}}},
    {{"StartCalendarInterval"},
     {Dict{{"Hour", 5}, {"Odd", 1}}, List{Dict{{"Hour", 5.0}}, "odd", Dict{{"Day", 31}, {"Odd", List{}}}}}},
    {{"Sockets"},
     {Dict{{"A", Dict{{"SockServiceName", "1069"}, {"SockPathMode", 438}, {"Bonjour", List{"b"}}}},
           {"B", List{Dict{{"SockPassive", false}}, Dict{{"SockPathOwner", 5}, {"Odd", 2.5}}, "odd"}},
           {"C", propertylist::Date{1}}}}},
    {{"MachServices"}, {Dict{{"a", true}, {"b", Dict{{"HostSpecialPort", 5}, {"Odd", Dict{{"x", "y"}}}}}, {"c", 5}}}},
    {{"LaunchEvents"},
     {Dict{{"stream", Dict{{"event", Dict{{"s", "t"}, {"r", 86400.0}, {"d", Dict{{"deep", List()}}}}}}}, {"o", 1}}}},
    {{"inetdCompatibility"}, {Dict{{"Wait", true}, {"Odd", "x"}}}},
    {{"Unheard", "a.b", ""}, {"odd", 7}},
};

inline Dict file(std::minstd_rand& random) {
  const auto oneOf = [&random](const List& values) { return values[random() % values.size()]; };
  Dict file;
  for (const auto& [keys, values] : generatedKeys) {
    for (const std::string& key : keys) {
      if (random() % 3 != 0) file.set(key, oneOf(random() % 8 == 0 ? oddValues : values));
    }
  }
  file.set("Label", "org.generated");
  return file;
}

}  // namespace mirvel::generated
