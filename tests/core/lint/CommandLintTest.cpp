#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"
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
    for (const Finding& finding : lint(propertylist::writeBinary(job({{"ProgramArguments", row.arguments}})),
                                       {.exists = [](const std::string&) { return true; }})) {
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

}  // namespace
}  // namespace mirvel::lint
