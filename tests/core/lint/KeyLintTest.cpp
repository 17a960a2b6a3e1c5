#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"
#include "core/lint/Suggestion.h"
#include "core/lint/Vocabulary.h"

namespace mirvel::lint {
namespace {

TEST(KeyLintTest, UnknownKeysAreReportedWithASuggestion) {
  expectFindings({
      {{}, {}},
      {{{"_PanicOnCrash", true}}, {}},
      {{{"AssociatedBundleIdentifiers", "x"}, {"POSIXSpawnType", "App"}}, {}},
      {{{"Boxen", Dict{}}}, {"warning: Boxen: unknown key"}},
      {{{"EnabledPressuredExit", true}},
       {"warning: EnabledPressuredExit: unknown key; did you mean EnablePressuredExit?"}},
      {{{"Hour", 3}}, {"warning: Hour: unknown key here; it belongs in StartCalendarInterval"}},
      {{{"SuccessfulExit", false}}, {"warning: SuccessfulExit: unknown key here; it belongs in KeepAlive"}},
      {{{"Label", ""}}, {"warning: Label: the label is empty"}},
  });
}

TEST(KeyLintTest, DeprecatedKeysAreReported) {
  expectFindings({
      {{{"OnDemand", true}}, {"warning: OnDemand: deprecated key; use KeepAlive"}},
      {{{"TimeOut", 5}}, {"warning: TimeOut: deprecated key"}},
      {{{"KeepAlive", Dict{{"NetworkState", true}}}},
       {"warning: KeepAlive.NetworkState: deprecated key; launchd ignores it"}},
      {{{"KeepAlive", true}, {"ExitTimeOut", 5}}, {}},
  });
}

TEST(KeyLintTest, OnlyMisspeltWordsAreReported) {
  expectFindings({
      {{{"ProcessType", "Interactive"}}, {}},
      {{{"ProcessType", "App"}}, {}},
      {{{"ProcessType", "background"}},
       {"warning: ProcessType: unknown value \"background\"; did you mean Background?"}},
      {{{"LimitLoadToSessionType", List{"Aqua", "System", "Loginwindow"}}},
       {"warning: LimitLoadToSessionType[2]: unknown value \"Loginwindow\"; did you mean LoginWindow?"}},
      {{{"LimitLoadToSessionType", "aqua"}},
       {"warning: LimitLoadToSessionType: unknown value \"aqua\"; did you mean Aqua?"}},
  });
}

TEST(KeyLintTest, NestedEntriesThatTheRecordCannotHoldAreReported) {
  const std::string unknown = ": unknown key";
  const std::string unfit = ": the value doesn't fit its key";
  expectFindings({
      {{{"KeepAlive", Dict{{"Crashed", true}, {"PathState", Dict{{"/a", true}}}}}}, {}},
      {{{"KeepAlive", Dict{{"Crashd", true}}}}, {"warning: KeepAlive.Crashd" + unknown + "; did you mean Crashed?"}},
      {{{"KeepAlive", Dict{{"Crashed", true}, {"Odd", 1}}}, {"OnDemand", false}},
       {"warning: OnDemand: deprecated key; use KeepAlive", "warning: KeepAlive.Odd" + unknown}},
      {{{"KeepAlive", false}, {"OnDemand", false}}, {"warning: OnDemand: deprecated key; use KeepAlive"}},
      {{{"KeepAlive", "yes"}}, {"warning: KeepAlive" + unfit}},
      {{{"KeepAlive", Dict{}}}, {}},
      {{{"Umask", "022"}}, {}},
      {{{"Umask", 18}}, {}},
      {{{"Nice", 3.0}}, {}},
      {{{"WatchPaths", List{}}, {"StartCalendarInterval", List{}}}, {}},
      {{{"StartCalendarInterval", List{Dict{{"Minute", 0}}, Dict{{"Minute", 30}, {"Second", 5}}}}},
       {"warning: StartCalendarInterval[1].Second" + unknown}},
      {{{"StartCalendarInterval", Dict{{"Minute", 0}, {"Hour", 3}, {"WeekDay", 5}}}},
       {"warning: StartCalendarInterval.WeekDay" + unknown + "; did you mean Weekday?"}},
      {{{"SoftResourceLimits", Dict{{"CPU", 5}, {"cpu", 5}}}},
       {"warning: SoftResourceLimits.cpu" + unknown + "; did you mean CPU?"}},
      {{{"Sockets", Dict{{"A", Dict{{"SockType", "stream"}, {"Rendezvous", true}}}}}},
       {"warning: Sockets.A.Rendezvous" + unknown}},
      {{{"Sockets", Dict{{"A", List{Dict{{"SockServiceName", 80}}, Dict{{"Rendezvous", true}}}}}}},
       {"warning: Sockets.A[1].Rendezvous" + unknown}},
      {{{"Sockets", Dict{{"A", Dict{{"SockPassive", "yes"}}}}}}, {"warning: Sockets.A" + unfit}},
      {{{"MachServices", Dict{{"a", true}, {"b", 5}}}}, {"warning: MachServices.b" + unfit}},
      {{{"LaunchEvents", Dict{{"s", Dict{{"e", Dict{{"k", Dict{{"x", 1}}}, {"l", List{1, 2}}}}}}}}}, {}},
      {{{"LaunchEvents", Dict{{"s", Dict{{"e", Dict{{"k", List{Dict{{"x", 1}}}}}}}}}}}, {}},
      {{{"EnvironmentVariables", Dict{{"Crashed", "1"}}}}, {}},
      {{{"Label", 1}, {"Nice", "x"}, {"StartCalendarInterval", Dict{{"Hour", "3"}}}, {"Umask", "x"}},
       {"error: Label: holds 1, an integer, where a string belongs",
        "error: StartCalendarInterval.Hour: Start calendar interval type error: \"3\", a string, where an integer "
        "belongs",
        "error: Nice: holds \"x\", a string, where an integer belongs", "warning: Umask" + unfit}},
  });
}

TEST(SuggestionTest, DistancesCountEditsAndTranspositions) {
  const struct {
    const char* a;
    const char* b;
    std::size_t distance;
  } table[] = {
      {"", "", 0},           {"", "abc", 3},           {"abc", "", 3},
      {"Label", "label", 0}, {"Label", "Lable", 1},  // transposed
      {"Label", "Labl", 1},  {"Label", "Labeel", 1},   {"Label", "Lxbel", 1},
      {"ab", "ba", 1},       {"kitten", "sitting", 3}, {"ca", "abc", 3},
  };
  for (const auto& row : table) {
    EXPECT_EQ(editDistance(row.a, row.b), row.distance) << row.a << ' ' << row.b;
    EXPECT_EQ(editDistance(row.b, row.a), row.distance) << row.b << ' ' << row.a;
  }
}

TEST(SuggestionTest, OnlyCloseNamesAreSuggested) {
  const struct {
    std::string name;
    std::string meant;
  } table[] = {
      {"EnabledPressuredExit", "EnablePressuredExit"},
      {"StandardOutputPath", "StandardOutPath"},
      {"programarguments", "ProgramArguments"},
      {"StartCalenderInterval", "StartCalendarInterval"},
      {"KeepALive", "KeepAlive"},
      {"Lable", "Label"},
      {"Label", ""},    // is one
      {"Group", ""},    // too far from GroupName
      {"Enabled", ""},  // the opposite of Disabled
      {"Boxen", ""},
      {"Foo", ""},
      {"", ""},
      {std::string(100000, 'x'), ""},
  };
  for (const auto& row : table) {
    EXPECT_EQ(suggestion(row.name, topLevelKeys()).value_or(""), row.meant) << row.name.substr(0, 40);
  }
}

}  // namespace
}  // namespace mirvel::lint
