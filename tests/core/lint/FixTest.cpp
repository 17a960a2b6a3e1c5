#include "core/lint/Fix.h"

#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"
#include "core/locale/Localize.h"

namespace mirvel::lint {
namespace {

/// The findings of a user's agent that have a fix.
std::vector<Finding> fixable(const Dict& file, Kind kind = Kind::userAgent) {
  auto found = lint(propertylist::writeBinary(file), smallMachine(), kind);
  std::erase_if(found, [](const Finding& finding) { return !finding.fix; });
  return found;
}

TEST(FixTest, FixesChangeWhatTheyAreAboutAndNothingElse) {
  const struct {
    std::vector<std::pair<std::string, propertylist::Value>> broken;  // of `job`
    const char* title;
    std::vector<std::pair<std::string, propertylist::Value>> whole;
    Kind kind = Kind::userAgent;
  } table[] = {
      {{{"StandardOutputPath", "/tmp/a"}}, "Use \"StandardOutPath\"", {{"StandardOutPath", "/tmp/a"}}},
      {{{"KeepAlive", Dict{{"Crashd", true}, {"Odd", 1}}}},
       "Use \"Crashed\"",
       {{"KeepAlive", Dict{{"Crashed", true}, {"Odd", 1}}}}},
      {{{"StartCalendarInterval", List{Dict{{"Minute", 0}}, Dict{{"Minute", 1}, {"WeekDay", 5}}}}},
       "Use \"Weekday\"",
       {{"StartCalendarInterval", List{Dict{{"Minute", 0}}, Dict{{"Minute", 1}, {"Weekday", 5}}}}}},
      {{{"Sockets", Dict{{"a.b", Dict{{"SockTyp", "stream"}}}}}},
       "Use \"SockType\"",
       {{"Sockets", Dict{{"a.b", Dict{{"SockType", "stream"}}}}}}},
      {{{"ProcessType", "background"}}, "Use \"Background\"", {{"ProcessType", "Background"}}},
      {{{"LimitLoadToSessionType", List{"Aqua", "loginwindow"}}},
       "Use \"LoginWindow\"",
       {{"LimitLoadToSessionType", List{"Aqua", "LoginWindow"}}}},
      {{{"LimitLoadToSessionType", "aqua"}}, "Use \"Aqua\"", {{"LimitLoadToSessionType", "Aqua"}}},
      {{{"StandardErrorPath", "~/x"}}, "Use \"/Users/me/x\"", {{"StandardErrorPath", "/Users/me/x"}}},
      {{{"WatchPaths", List{"/tmp", "${HOME}"}}}, "Use \"/Users/me\"", {{"WatchPaths", List{"/tmp", "/Users/me"}}}},
      {{{"EnvironmentVariables", Dict{{"A.B", "$HOME/x"}}}},
       "Use \"/Users/me/x\"",
       {{"EnvironmentVariables", Dict{{"A.B", "/Users/me/x"}}}}},
      {{{"ProgramArguments", List{"~/bin/x"}}},
       "Use \"/Users/me/bin/x\"",
       {{"ProgramArguments", List{"/Users/me/bin/x"}}}},
      {{{"ProgramArguments", List{"/bin/ls", "~"}}},
       "Use \"/Users/me\"",
       {{"ProgramArguments", List{"/bin/ls", "/Users/me"}}}},
      {{{"ProgramArguments", List{"/bin/ls -l  /tmp", "x y"}}},
       "Split Into Arguments",
       {{"ProgramArguments", List{"/bin/ls", "-l", "/tmp", "x y"}}}},
      {{{"ServiceIPC", true}}, "Remove", {}},
      {{{"KeepAlive", Dict{{"NetworkState", true}, {"Crashed", true}}}},
       "Remove",
       {{"KeepAlive", Dict{{"Crashed", true}}}}},
      {{{"UserName", "me"}}, "Remove", {}},
      {{{"InitGroups", false}}, "Remove", {}, Kind::systemAgent},
      {{{"LimitLoadToSessionType", "Aqua"}}, "Remove", {}, Kind::localDaemon},
      {{{"Umask", 77}}, "Use \"63\"", {{"Umask", 63}}},
      {{{"Sockets", Dict{{"a", List{Dict{}, Dict{{"SockPathMode", 600}}}}}}},
       "Use \"384\"",
       {{"Sockets", Dict{{"a", List{Dict{}, Dict{{"SockPathMode", 384}}}}}}}},
  };
  for (const auto& row : table) {
    const Dict file = job(row.broken);
    const auto found = fixable(file, row.kind);
    ASSERT_EQ(found.size(), 1U) << row.title << ' ' << testing::PrintToString(propertylist::Value(file));
    EXPECT_EQ(found[0].fix->title.english(), row.title);
    const auto result = mended(file, *found[0].fix);
    EXPECT_EQ(result, job(row.whole)) << row.title;
  }
}

TEST(FixTest, WithoutCertaintyThereIsNoFix) {
  const struct {
    std::vector<std::pair<std::string, propertylist::Value>> entries;
    Kind kind = Kind::userAgent;
  } table[] = {
      {{{"Boxen", true}}},
      {{{"Nicee", 1}, {"Nice", 2}}},
      {{{"KeepAlive", Dict{{"Crashd", true}, {"Crashed", false}}}}},
      {{{"StandardOutPath", "~/x"}}, Kind::localDaemon},  // whose home folder?
      {{{"StandardOutPath", "~/x"}}, Kind::localAgent},
      {{{"StandardOutPath", "$HOMEX/x"}}},
      {{{"StandardOutPath", "/a/$HOME"}}},
      {{{"StandardOutPath", "~/$X"}}},
      {{{"StandardOutPath", "@HOME@/x"}}},
      {{{"Label", "~/x"}}},
      {{{"ProgramArguments", List{"/bin/ls \"a b\""}}}},
      {{{"ProgramArguments", List{"/bin/ls *"}}}},
      {{{"Program", "/bin/ls -l"}}},
      {{{"Umask", 80}}},
      {{{"Umask", "0700"}}},
      {{{"LimitLoadToSessionType", "System"}}, Kind::localDaemon},
  };
  for (const auto& row : table) {
    const Dict file = job(row.entries);
    EXPECT_TRUE(fixable(file, row.kind).empty()) << testing::PrintToString(propertylist::Value(file));
  }
}

TEST(FixTest, AChangedFileIsNotMended) {
  const Dict file = job({{"A", List{Dict{{"x", 1}}, "b"}}, {"B", Dict{{"x", 1}, {"y", 2}}}});
  const Fix table[] = {
      Fix::remove({}),
      Fix::remove({"C"}),
      Fix::remove({"A", "[2]"}),
      Fix::remove({"A", "[x]"}),
      Fix::remove({"A", "0"}),
      Fix::remove({"A", "[0]", "x", "y"}),
      Fix::rename({"B", "x"}, "y"),
      Fix::rename({"A", "[1]"}, "c"),
      Fix::rename({"C"}, "D"),
      Fix::replace({"A", "[1]"}, "c", "d", "d"),
      Fix::replace({"C"}, "c", "d", "d"),
  };
  for (const Fix& fix : table) EXPECT_EQ(mended(file, fix), std::nullopt) << testing::PrintToString(fix.path);
  EXPECT_EQ(mended(file, Fix::remove({"A", "[0]"})), job({{"A", List{"b"}}, {"B", Dict{{"x", 1}, {"y", 2}}}}));
}

TEST(ClauseTest, SentencesBeginWithACapitalAndEndOnce) {
  const Localize localize("en");
  const struct {
    Clause clause;
    const char* english;
    const char* sentence;
  } table[] = {
      {clause("unknown key"), "unknown key", "Unknown key."},
      {clause("unknown key; did you mean %@?", {"Label"}), "unknown key; did you mean Label?",
       "Unknown key; did you mean Label?"},
      {clause("launchd doesn’t expand %@", {"~"}), "launchd doesn't expand ~", "launchd doesn’t expand ~."},
      {clause("%@ doesn’t exist on this machine", {"usr"}), "usr doesn't exist on this machine",
       "usr doesn’t exist on this machine."},
      {clause("unknown value “%@”; did you mean %@?", {"it’s", "x"}), "unknown value \"it’s\"; did you mean x?",
       "Unknown value “it’s”; did you mean x?"},
      {untranslated("100%@"), "100%@", "100%@."},
  };
  for (const auto& row : table) {
    EXPECT_EQ(row.clause.english(), row.english);
    EXPECT_EQ(row.clause.sentence(localize), row.sentence);
  }
}

TEST(FindingTest, TheFieldIsTheTopLevelKeyOrTheCondition) {
  const std::pair<const char*, const char*> table[] = {
      {"", ""},
      {"Nice", "Nice"},
      {"ProgramArguments[0]", "ProgramArguments"},
      {"StartCalendarInterval[1].Hour", "StartCalendarInterval"},
      {"KeepAlive", "KeepAlive"},
      {"KeepAlive.Crashed", "Crashed"},
      {"KeepAlive.PathState./a.b/c", "PathState"},
      {"KeepAlive.Odd", "KeepAlive"},
      {"EnvironmentVariables.A.B", "EnvironmentVariables"},
      {"com.example.key", "com.example.key"},
  };
  for (const auto& [path, field] : table) EXPECT_EQ(Finding{.keyPath = path}.field(), field);
}

}  // namespace
}  // namespace mirvel::lint
