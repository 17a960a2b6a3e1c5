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

/// The other keys are in the tables of SectionRowsTest.
TEST(SectionStackTest, KeysBringTheirSectionIntoTheDetails) {
  const struct {
    const char* key;
    S section;
    std::function<void(Plist&)> set;
  } table[] = {
      {"RunAtLoad", S::When, [](Plist& p) { p.runAtLoad = false; }},
      {"KeepAlive without a condition", S::When, [](Plist& p) { p.keepAlive.emplace(); }},
      {"StartOnMount", S::When, [](Plist& p) { p.startOnMount = false; }},
      {"StartInterval", S::When, [](Plist& p) { p.startInterval = 60; }},
      {"StartCalendarInterval", S::When, [](Plist& p) { p.startCalendarInterval = {.intervals = {{}}}; }},
      {"StandardErrorPath", S::Paths, [](Plist& p) { p.standardErrorPath = ""; }},
      {"QueueDirectories", S::Paths, [](Plist& p) { p.queueDirectories.emplace(); }},
      {"Nice", S::Limits, [](Plist& p) { p.nice = 0; }},
      {"LimitLoadToSessionType", S::Limits, [](Plist& p) { p.limitLoadToSessionType.emplace(); }},
      {"InitGroups", S::Root, [](Plist& p) { p.initGroups = false; }},
      {"EnablePressuredExit", S::Miscellaneous, [](Plist& p) { p.enablePressuredExit = false; }},
      {"EnableTransactions", S::Miscellaneous, [](Plist& p) { p.enableTransactions = false; }},
      {"LegacyTimers", S::Miscellaneous, [](Plist& p) { p.legacyTimers = false; }},
      {"MaterializeDatalessFiles", S::Miscellaneous, [](Plist& p) { p.materializeDatalessFiles = false; }},
      {"SessionCreate", S::Miscellaneous, [](Plist& p) { p.sessionCreate = false; }},
      {"Umask", S::Miscellaneous, [](Plist& p) { p.umask.emplace(); }},
      {"EnvironmentVariables", S::EnvironmentVariables,
       [](Plist& p) {
         p.environmentVariables = jobfile::StringMap<std::string>{{"A", ""}};
       }},
      {"LaunchEvents", S::LaunchEvents, [](Plist& p) { p.launchEvents.emplace(); }},
      {"MachServices", S::MachServices, [](Plist& p) { p.machServices.emplace(); }},
      {"Sockets", S::Sockets, [](Plist& p) { p.sockets.emplace(); }},
      {"Debug", S::Deprecated, [](Plist& p) { p.debug = false; }},
      {"a key that isn't known", S::Unknown, [](Plist& p) { p.unknownKeys.emplace(); }},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.key);
    Plist plist;
    row.set(plist);
    EXPECT_EQ(sections(displayStack(plist, localize)), (std::vector<S>{S::General, row.section, S::Notes}));
    const bool isConditional = row.section == S::Deprecated || row.section == S::Unknown;
    EXPECT_EQ(editStack(plist, localize).size(), isConditional ? 12U : 11U);
  }
}

TEST(SectionStackTest, OnlyTheEnvironmentMustHoldSomething) {
  Plist plist;
  plist.environmentVariables.emplace();
  EXPECT_EQ(sections(displayStack(plist, localize)), (std::vector<S>{S::General, S::Notes}));
}

TEST(SectionStackTest, SectionsHaveTheirOrderAndTitles) {
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
