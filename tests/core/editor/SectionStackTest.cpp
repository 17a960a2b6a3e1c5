#include "core/editor/SectionStack.h"

#include <gtest/gtest.h>

#include <functional>

namespace mirvel {
namespace {

using jobfile::Plist;
using S = StackSection;

const Localize localize("en");

std::vector<S> sections(const std::vector<StackEntry>& stack) {
  std::vector<S> result;
  for (const StackEntry& entry : stack) result.push_back(entry.section);
  return result;
}

TEST(SectionStackTest, EachKeyBringsItsSectionIntoTheDetails) {
  const struct {
    const char* key;
    S section;
    std::function<void(Plist&)> set;
  } table[] = {
      {"RunAtLoad", S::when, [](Plist& p) { p.runAtLoad = false; }},
      {"KeepAlive without a condition", S::when, [](Plist& p) { p.keepAlive.emplace(); }},
      {"StartOnMount", S::when, [](Plist& p) { p.startOnMount = false; }},
      {"StartInterval", S::when, [](Plist& p) { p.startInterval = 60; }},
      {"StartCalendarInterval", S::when, [](Plist& p) { p.startCalendarInterval = {.intervals = {{}}}; }},
      {"StandardErrorPath", S::paths, [](Plist& p) { p.standardErrorPath = ""; }},
      {"StandardInPath", S::paths, [](Plist& p) { p.standardInPath = ""; }},
      {"StandardOutPath", S::paths, [](Plist& p) { p.standardOutPath = ""; }},
      {"WorkingDirectory", S::paths, [](Plist& p) { p.workingDirectory = ""; }},
      {"QueueDirectories", S::paths, [](Plist& p) { p.queueDirectories.emplace(); }},
      {"WatchPaths", S::paths, [](Plist& p) { p.watchPaths.emplace(); }},
      {"LowPriorityIO", S::limits, [](Plist& p) { p.lowPriorityIO = false; }},
      {"LowPriorityBackgroundIO", S::limits, [](Plist& p) { p.lowPriorityBackgroundIO = false; }},
      {"LaunchOnlyOnce", S::limits, [](Plist& p) { p.launchOnlyOnce = false; }},
      {"Nice", S::limits, [](Plist& p) { p.nice = 0; }},
      {"ThrottleInterval", S::limits, [](Plist& p) { p.throttleInterval = 0; }},
      {"ProcessType", S::limits, [](Plist& p) { p.processType = ""; }},
      {"LimitLoadToSessionType", S::limits, [](Plist& p) { p.limitLoadToSessionType.emplace(); }},
      {"LimitLoadToHardware", S::limits, [](Plist& p) { p.limitLoadToHardware.emplace(); }},
      {"SoftResourceLimits", S::limits, [](Plist& p) { p.softResourceLimits.emplace(); }},
      {"HardResourceLimits", S::limits, [](Plist& p) { p.hardResourceLimits.emplace(); }},
      {"InitGroups", S::root, [](Plist& p) { p.initGroups = false; }},
      {"UserName", S::root, [](Plist& p) { p.userName = ""; }},
      {"GroupName", S::root, [](Plist& p) { p.groupName = ""; }},
      {"AbandonProcessGroup", S::miscellaneous, [](Plist& p) { p.abandonProcessGroup = false; }},
      {"EnablePressuredExit", S::miscellaneous, [](Plist& p) { p.enablePressuredExit = false; }},
      {"EnableTransactions", S::miscellaneous, [](Plist& p) { p.enableTransactions = false; }},
      {"LegacyTimers", S::miscellaneous, [](Plist& p) { p.legacyTimers = false; }},
      {"MaterializeDatalessFiles", S::miscellaneous, [](Plist& p) { p.materializeDatalessFiles = false; }},
      {"SessionCreate", S::miscellaneous, [](Plist& p) { p.sessionCreate = false; }},
      {"WaitForDebugger", S::miscellaneous, [](Plist& p) { p.waitForDebugger = false; }},
      {"ExitTimeOut", S::miscellaneous, [](Plist& p) { p.exitTimeOut = 0; }},
      {"Umask", S::miscellaneous, [](Plist& p) { p.umask.emplace(); }},
      {"EnvironmentVariables", S::environmentVariables,
       [](Plist& p) {
         p.environmentVariables = jobfile::StringMap<std::string>{{"A", ""}};
       }},
      {"LaunchEvents", S::launchEvents, [](Plist& p) { p.launchEvents.emplace(); }},
      {"MachServices", S::machServices, [](Plist& p) { p.machServices.emplace(); }},
      {"Sockets", S::sockets, [](Plist& p) { p.sockets.emplace(); }},
      {"Debug", S::deprecated, [](Plist& p) { p.debug = false; }},
      {"EnableGlobbing", S::deprecated, [](Plist& p) { p.enableGlobbing = false; }},
      {"OnDemand", S::deprecated, [](Plist& p) { p.onDemand = false; }},
      {"ServiceIPC", S::deprecated, [](Plist& p) { p.serviceIPC = false; }},
      {"TimeOut", S::deprecated, [](Plist& p) { p.timeOut = 0; }},
      {"HopefullyExitsFirst", S::deprecated, [](Plist& p) { p.hopefullyExitsFirst = false; }},
      {"HopefullyExitsLast", S::deprecated, [](Plist& p) { p.hopefullyExitsLast = false; }},
      {"RootDirectory", S::deprecated, [](Plist& p) { p.rootDirectory = ""; }},
      {"LimitLoadFromHosts", S::deprecated, [](Plist& p) { p.limitLoadFromHosts.emplace(); }},
      {"LimitLoadToHosts", S::deprecated, [](Plist& p) { p.limitLoadToHosts.emplace(); }},
      {"inetdCompatibility", S::deprecated, [](Plist& p) { p.inetdCompatibility.emplace(); }},
      {"a key that isn't known", S::unknown, [](Plist& p) { p.unknownKeys.emplace(); }},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.key);
    Plist plist;
    row.set(plist);
    EXPECT_EQ(sections(displayStack(plist, localize)), (std::vector<S>{S::general, row.section, S::notes}));
    const bool isConditional = row.section == S::deprecated || row.section == S::unknown;
    EXPECT_EQ(editStack(plist, localize).size(), isConditional ? 12U : 11U);
  }
}

TEST(SectionStackTest, OnlyTheEnvironmentMustHoldSomething) {
  Plist plist;
  plist.environmentVariables.emplace();
  EXPECT_EQ(sections(displayStack(plist, localize)), (std::vector<S>{S::general, S::notes}));
}

TEST(SectionStackTest, SectionsStandInTheirOrderUnderTheirTitles) {
  Plist plist;
  plist.debug = true;
  plist.unknownKeys = std::vector<std::string>{"x"};
  std::vector<std::string> titles;
  for (const StackEntry& entry : editStack(plist, localize)) titles.push_back(entry.title.value_or("-"));
  EXPECT_EQ(titles,
            (std::vector<std::string>{"-", "When", "Paths", "Limits", "root", "Miscellaneous", "EnvironmentVariables",
                                      "LaunchEvents", "MachServices", "Sockets", "Deprecated", "Unknown", "Notes"}));
}

}  // namespace
}  // namespace mirvel
