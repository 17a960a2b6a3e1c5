#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"
#include "core/lint/Placeholder.h"
#include "core/lint/ShellSyntax.h"

namespace mirvel::lint {
namespace {

const std::string noProgram = "warning: the job has nothing to run: neither Program nor ProgramArguments is set";

TEST(CommandLintTest, TheProgramMustExistAndBeAbsolute) {
  const std::string first = "warning: ProgramArguments[0]: ";
  const std::string program = "warning: Program: ";
  expectFindings({
      {{{"ProgramArguments", absent}}, {noProgram}},
      {{{"ProgramArguments", List{}}}, {noProgram}},
      {{{"ProgramArguments", List{}}, {"Program", "/bin/ls"}}, {}},
      {{{"ProgramArguments", absent}, {"BundleProgram", "Contents/MacOS/x"}}, {}},
      {{{"ProgramArguments", List{"x", "-l"}}, {"BundleProgram", "Contents/MacOS/x"}}, {}},
      {{{"ProgramArguments", List{""}}}, {"error: ProgramArguments[0]: the path of the program is empty"}},
      {{{"ProgramArguments", List{"ls", "-l"}}, {"Program", "/bin/ls"}}, {}},
      {{{"ProgramArguments", List{"/bin/a b"}}}, {}},
      {{{"ProgramArguments", List{"/bin/none"}}}, {first + "/bin/none doesn't exist on this machine"}},
      {{{"ProgramArguments", List{"/bin/ls -l"}}},
       {first +
        "launchd treats all of this as the path of one program; each argument of /bin/ls must be a separate element of "
        "ProgramArguments"}},
      {{{"ProgramArguments", List{"ls"}}},
       {first + "the path of the program isn't absolute; launchd searches for it in the system's folders only"}},
      {{{"ProgramArguments", List{"php artisan"}}},
       {first + "the path of the program isn't absolute; each of its arguments must be a separate element"}},
      {{{"ProgramArguments", List{"bin/ls"}}}, {first + "the path of the program isn't absolute"}},
      {{{"Program", "ls"}}, {program + "the path of the program isn't absolute"}},
      {{{"ProgramArguments", List{"~/bin/x"}}}, {first + "launchd doesn't expand ~; write /Users/me instead"}},
      {{{"ProgramArguments", List{"${HOME}/bin/x"}}}, {first + "launchd doesn't expand ${HOME}"}},
      {{{"ProgramArguments", List{"@prefix@/bin/x"}}}, {first + "the placeholder @prefix@ hasn't been replaced"}},
      {{{"Program", List{"/bin/ls"}}}, {"error: Program: holds an array of 1 where a string belongs"}},
      {{{"ProgramArguments", "/bin/ls"}},
       {"error: ProgramArguments: holds \"/bin/ls\", a string, where an array belongs"}},
  });
}

TEST(CommandLintTest, ShellSyntaxIsReportedOutsideOfShellScripts) {
  const struct {
    List arguments;
    std::vector<std::string> suspects;
  } table[] = {
      {{"/bin/ls", ">", "/tmp/x", "2>&1"}, {">", "2>&1"}},
      {{"/bin/ls", "|", "wc", "&&", "ls", ";", "ls", "&"}, {"|", "&&", ";", "&"}},
      {{"/bin/ls", "$(date)", "`date`"}, {"$(date)", "`date`"}},
      {{"/bin/ls", "a>b", "a;b", "--x=$(date)", "$", "``", "$()"}, {"$()"}},
      {{"/bin/sh", "-c", "ls > x", "|"}, {}},
      {{"/bin/sh", "-lc", "ls", "~/x"}, {}},
      {{"/bin/sh", "/script", ">", "x"}, {">"}},
      {{"/bin/sh", "--clean", ">"}, {">"}},
      {{"/bin/ls", "-c", ">"}, {">"}},
      {{"/usr/bin/sudo", "/bin/sh", "-c", "a", ">"}, {}},
      {{"/usr/bin/find", "/", "-exec", "ls", "{}", ";"}, {}},
      {{"/bin/[", "a", "<", "b", "]"}, {}},
  };
  const std::string before = "launchd isn't a shell; it passes ";
  const std::string after = " to the program as an argument";
  for (const auto& row : table) {
    std::vector<std::string> suspects;
    for (const Finding& finding : lint(propertylist::writeBinary(job({{"ProgramArguments", row.arguments}})), {})) {
      ASSERT_TRUE(finding.message.starts_with(before) && finding.message.ends_with(after)) << finding.text();
      const std::size_t size = finding.message.size() - before.size() - after.size();
      suspects.push_back(finding.message.substr(before.size(), size));
    }
    EXPECT_EQ(suspects, row.suspects) << testing::PrintToString(propertylist::Value(row.arguments));
  }
}

TEST(CommandLintTest, ArgumentsThatAShellWouldExpandAreReported) {
  const std::string second = "warning: ProgramArguments[1]: launchd doesn't expand ";
  const std::string deprecated = "warning: EnableGlobbing: deprecated key; let a shell expand the arguments";
  expectFindings({
      {{{"ProgramArguments", List{"/bin/ls", "~/x"}}}, {second + "~; write /Users/me instead"}},
      {{{"ProgramArguments", List{"/bin/ls", "$HOME/x"}}}, {second + "$HOME"}},
      {{{"ProgramArguments", List{"/bin/ls", "~me", "a~/b", "^x$", "$1", "@a@", "{{.Name}}"}}}, {}},
      {{{"ProgramArguments", List{"/bin/ls", "~/x"}}, {"EnableGlobbing", true}}, {deprecated}},
      {{{"ProgramArguments", List{"/bin/ls", "~/x"}}, {"EnableGlobbing", false}},
       {deprecated, second + "~; write /Users/me instead"}},
      {{{"ProgramArguments", List{"/bin/sh", "-c", "~/x"}}}, {}},
      // ProgramArguments[0] is argv[0]; the other arguments are checked as usual.
      {{{"ProgramArguments", List{"sh", "-c", "~/x"}}, {"Program", "/bin/sh"}}, {}},
      {{{"ProgramArguments", List{"ls", "~/x"}}, {"Program", "/bin/ls"}}, {second + "~; write /Users/me instead"}},
  });
}

TEST(PathLintTest, PlaceholdersAreFoundInPaths) {
  const struct {
    const char* text;
    const char* found;
  } table[] = {
      {"/usr/bin/ls", ""},
      {"~", "~"},
      {"~/x", "~"},
      {"~me/x", ""},
      {"/a~/x", ""},
      {"$HOME/x", "$HOME"},
      {"/a/${X}/b", "${X}"},
      {"/a/$X-b", "$X"},
      {"/a$", ""},
      {"/a/$5", ""},
      {"${", ""},
      {"${}", ""},
      {"${A", ""},
      {"@A@/x", "@A@"},
      {"x@example.com", ""},
      {"a@b c@d", ""},
      {"@@", ""},
      {"__HOME__/x", "__HOME__"},
      {"/a/__init__.py", ""},
      {"____", ""},
      {"/a/{{name}}.log", "{{name}}"},
      {"/a/{{name", ""},
      {"<%= x %>/a", "<%= x %>"},
  };
  for (const auto& row : table) {
    const auto placeholder = findPlaceholder(row.text);
    EXPECT_EQ(placeholder ? placeholder->text : "", row.found) << row.text;
  }
}

TEST(PathLintTest, EveryPathOfAJobIsChecked) {
  const propertylist::Value path = "$X/a";
  const Dict file = job({
      {"WorkingDirectory", path},
      {"RootDirectory", path},
      {"StandardInPath", path},
      {"StandardOutPath", path},
      {"StandardErrorPath", path},
      {"WatchPaths", List{"/a", path}},
      {"QueueDirectories", List{path}},
      {"KeepAlive", Dict{{"PathState", Dict{{"$X/a", true}, {"/b", true}}}}},
      {"EnvironmentVariables", Dict{{"A", path}, {"B", "5"}}},
      {"Sockets", Dict{{"S", Dict{{"SockPathName", path}}}, {"T", List{Dict{{"SockPathName", path}}}}}},
  });
  std::vector<std::string> places;
  for (const Finding& finding : lint(propertylist::writeBinary(file), smallMachine())) {
    if (finding.message == "launchd doesn't expand $X") places.push_back(finding.keyPath);
  }
  EXPECT_EQ(places, (std::vector<std::string>{"WorkingDirectory", "RootDirectory", "StandardInPath", "StandardOutPath",
                                              "StandardErrorPath", "WatchPaths[1]", "QueueDirectories[0]",
                                              "KeepAlive.PathState.$X/a", "EnvironmentVariables.A",
                                              "Sockets.S.SockPathName", "Sockets.T[0].SockPathName"}));

  const auto withoutHome =
      lint(propertylist::writeBinary(job({{"StandardOutPath", "~/x"}})), {.fileType = smallMachine().fileType});
  ASSERT_EQ(withoutHome.size(), 1U);
  EXPECT_EQ(withoutHome[0].text(), "warning: StandardOutPath: launchd doesn't expand ~");
}

}  // namespace
}  // namespace mirvel::lint
