#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"
#include "core/lint/ShellSyntax.h"

namespace mirvel::lint {
namespace {

const std::string noProgram = "warning: there is nothing to run: neither Program nor ProgramArguments";

TEST(CommandLintTest, TheProgramMustBeThereAndAbsolute) {
  const std::string first = "warning: ProgramArguments[0]: ";
  const std::string program = "warning: Program: ";
  const Row table[] = {
      {{{"ProgramArguments", absent}}, {noProgram}},
      {{{"ProgramArguments", List{}}}, {noProgram}},
      {{{"ProgramArguments", List{}}, {"Program", "/bin/ls"}}, {}},
      {{{"ProgramArguments", absent}, {"BundleProgram", "Contents/MacOS/x"}}, {}},
      {{{"ProgramArguments", List{"x", "-l"}}, {"BundleProgram", "Contents/MacOS/x"}}, {}},
      {{{"ProgramArguments", List{""}}}, {"error: ProgramArguments[0]: the path of the program is empty"}},
      {{{"ProgramArguments", List{"ls", "-l"}}, {"Program", "/bin/ls"}}, {}},
      {{{"ProgramArguments", List{"/bin/a b"}}}, {}},
      {{{"ProgramArguments", List{"/bin/none"}}}, {first + "/bin/none doesn't exist here"}},
      {{{"ProgramArguments", List{"/bin/ls -l"}}},
       {first +
        "launchd takes all of it for the path of one program; each argument of /bin/ls needs an element of its own in "
        "ProgramArguments"}},
      {{{"ProgramArguments", List{"ls"}}},
       {first + "the path of the program isn't absolute; launchd looks for it in the system's own folders only"}},
      {{{"ProgramArguments", List{"php artisan"}}},
       {first + "the path of the program isn't absolute, and each of its arguments needs an element of its own"}},
      {{{"ProgramArguments", List{"bin/ls"}}}, {first + "the path of the program isn't absolute"}},
      {{{"Program", "ls"}}, {program + "the path of the program isn't absolute"}},
      {{{"ProgramArguments", List{"~/bin/x"}}}, {first + "launchd doesn't expand ~; write /Users/me in its place"}},
      {{{"ProgramArguments", List{"${HOME}/bin/x"}}}, {first + "launchd doesn't expand ${HOME}"}},
      {{{"ProgramArguments", List{"@prefix@/bin/x"}}}, {first + "the placeholder @prefix@ isn't filled in"}},
      {{{"Program", List{"/bin/ls"}}}, {"error: Program: holds an array of 1 where a string belongs"}},
      {{{"ProgramArguments", "/bin/ls"}},
       {"error: ProgramArguments: holds \"/bin/ls\", a string, where an array belongs"}},
  };
  for (const Row& row : table) {
    EXPECT_EQ(remarks(job(row.entries)), row.remarks) << testing::PrintToString(propertylist::Value(job(row.entries)));
  }
}

TEST(CommandLintTest, ShellSyntaxIsToldUnlessAShellReadsIt) {
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
  for (const auto& row : table) {
    std::vector<std::string> suspects;
    for (const Finding& finding : lint(propertylist::writeBinary(job({{"ProgramArguments", row.arguments}})),
                                       {.exists = [](const std::string&) { return true; }})) {
      ASSERT_TRUE(finding.message.starts_with("launchd is no shell; the program gets ")) << finding.text();
      suspects.push_back(finding.message.substr(38, finding.message.size() - 38 - 15));
    }
    EXPECT_EQ(suspects, row.suspects) << testing::PrintToString(propertylist::Value(row.arguments));
  }
}

TEST(CommandLintTest, ArgumentsThatAShellWouldExpandAreTold) {
  const std::string second = "warning: ProgramArguments[1]: launchd doesn't expand ";
  const std::string deprecated = "warning: EnableGlobbing: deprecated key; let a shell expand the arguments";
  const Row table[] = {
      {{{"ProgramArguments", List{"/bin/ls", "~/x"}}}, {second + "~; write /Users/me in its place"}},
      {{{"ProgramArguments", List{"/bin/ls", "$HOME/x"}}}, {second + "$HOME"}},
      {{{"ProgramArguments", List{"/bin/ls", "~me", "a~/b", "^x$", "$1", "@a@", "{{.Name}}"}}}, {}},
      {{{"ProgramArguments", List{"/bin/ls", "~/x"}}, {"EnableGlobbing", true}}, {deprecated}},
      {{{"ProgramArguments", List{"/bin/ls", "~/x"}}, {"EnableGlobbing", false}},
       {deprecated, second + "~; write /Users/me in its place"}},
      {{{"ProgramArguments", List{"/bin/sh", "-c", "~/x"}}}, {}},
      // The first argument is the name of the program, and the others count as before.
      {{{"ProgramArguments", List{"sh", "-c", "~/x"}}, {"Program", "/bin/sh"}}, {}},
      {{{"ProgramArguments", List{"ls", "~/x"}}, {"Program", "/bin/ls"}}, {second + "~; write /Users/me in its place"}},
  };
  for (const Row& row : table) {
    EXPECT_EQ(remarks(job(row.entries)), row.remarks) << testing::PrintToString(propertylist::Value(job(row.entries)));
  }
}

}  // namespace
}  // namespace mirvel::lint
