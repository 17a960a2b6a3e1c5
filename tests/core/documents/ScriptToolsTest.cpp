#include <gtest/gtest.h>

#include "core/documents/DocumentFixture.h"
#include "core/documents/ScriptJobs.h"
#include "core/documents/SyntaxCheck.h"
#include "core/documents/TextForm.h"
#include "core/process/SystemProcessRunner.h"

namespace mirvel {
namespace {

TEST(TextFormTest, TellsHowLinesEndAndAreIndented) {
  struct Row {
    const char* text;
    TextForm form;
  };
  const Row rows[] = {
      {"", {}},
      {"a", {}},
      {"a\nb\n", {LineEnd::Unix}},
      {"a\r\nb\r\n", {LineEnd::Windows}},
      {"a\rb\r", {LineEnd::Mac}},
      {"a\r\nb\n", {LineEnd::Mixed}},
      {"a\r\r\n", {LineEnd::Mixed}},
      {"if\n\tx\n\ty\nfi\n", {LineEnd::Unix, true}},
      {"if\n  x\n  if\n    y\n", {LineEnd::Unix, false, 2}},
      {"if\n    x\n    y\n\tz\n", {LineEnd::Unix, false, 4}},
      {"# a\n x\n", {LineEnd::Unix, true}},
  };
  for (const Row& row : rows) EXPECT_EQ(TextForm::of(row.text), row.form) << row.text;
}

TEST(TextFormTest, ConvertsMixedLineEnds) {
  const char* const mixed = "a\r\nb\rc\n\n\r\r\nd";
  EXPECT_EQ(withLineEnds(mixed, LineEnd::Unix), "a\nb\nc\n\n\n\nd");
  EXPECT_EQ(withLineEnds(mixed, LineEnd::Windows), "a\r\nb\r\nc\r\n\r\n\r\n\r\nd");
  EXPECT_EQ(withLineEnds("", LineEnd::Windows), "");
}

TEST(TextFormTest, FindsAnInterpreterThatEndsWithAReturn) {
  EXPECT_TRUE(TextForm::of("#!/bin/sh\r\necho\n").hasUnusableInterpreter);
  for (const char* text : {"#!/bin/sh\necho\r\n", "echo\r\n", "#!/bin/sh", "#!/bin/sh\recho", ""}) {
    EXPECT_FALSE(TextForm::of(text).hasUnusableInterpreter) << text;
  }
}

TEST(SyntaxCheckTest, FindsLineAndMessage) {
  struct Row {
    const char* complaints;
    SyntaxProblem problem;
  };
  const Row rows[] = {
      {"/t/x: 3: Syntax error: \"fi\" unexpected\n", {3, "Syntax error: \"fi\" unexpected"}},
      {"/t/x: line 12: syntax error near unexpected token `)'\n/t/x: line 12: `)'\n",
       {12, "syntax error near unexpected token `)'"}},
      {"/t/x:7: parse error near `}'\n", {7, "parse error near `}'"}},
      {"Traceback (most recent call last):\n  File \"<string>\", line 1, in <module>\n  File \"/t/x\", line 4\n    if\n"
       "      ^\nSyntaxError: invalid syntax\n",
       {4, "SyntaxError: invalid syntax"}},
      {"something else\n", {0, "something else"}},
      {"", {0, ""}},
  };
  for (const Row& row : rows) {
    const SyntaxProblem problem = problemIn(row.complaints, "/t/x");
    EXPECT_EQ(problem.line, row.problem.line) << row.complaints;
    EXPECT_EQ(problem.message, row.problem.message) << row.complaints;
  }
}

TEST(SyntaxCheckTest, AsksTheRealShellWithoutRunningTheScript) {
  const testdata::TemporaryFolder folder;
  SystemProcessRunner runner(Environment{{"PATH", "/usr/bin:/bin"}});
  const Commands commands = Commands::forThisMachine({{"PATH", "/usr/bin:/bin"}});
  const std::string touch = "#!/bin/sh\ntouch '" + (folder.path() / "touched").string() + "'\n";
  const auto check = SyntaxCheck::of(SyntaxType::shell, touch, commands);
  ASSERT_TRUE(check);
  const auto good = check->run(touch, folder.path() / "s", runner);
  ASSERT_TRUE(good);
  EXPECT_FALSE(*good);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "touched"));
  const auto bad = check->run(touch + "if true\n", folder.path() / "s", runner);
  ASSERT_TRUE(bad);
  ASSERT_TRUE(*bad);
  EXPECT_GE((*bad)->line, 3U);
  EXPECT_EQ((*bad)->message.find(folder.path().string()), std::string::npos) << (*bad)->message;
  EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "s"));
}

TEST(SyntaxCheckTest, IsOfferedOnlyForLanguagesWhoseCheckRunsNothing) {
  Commands commands;
  commands.shell = commands.bash = commands.zsh = commands.python = commands.perl = "/bin/sh";
  EXPECT_TRUE(SyntaxCheck::of(SyntaxType::python, "", commands));
  EXPECT_FALSE(SyntaxCheck::of(SyntaxType::perl, "", commands)) << "it would run BEGIN blocks";
  EXPECT_FALSE(SyntaxCheck::of(SyntaxType::none, "", commands));
  EXPECT_FALSE(SyntaxCheck::of(SyntaxType::shell, "#!/usr/bin/env fish\n", commands));
  commands.zsh = "/nowhere/zsh";
  EXPECT_FALSE(SyntaxCheck::of(SyntaxType::shell, "#!/usr/bin/env zsh\n", commands));
  commands.bash = "/bin/cat";
  EXPECT_EQ(SyntaxCheck::of(SyntaxType::shell, "#!/usr/bin/env bash\n", commands)->program, "/bin/cat");
}

class ScriptJobsTest : public testdata::ProgramFixture {};

TEST_F(ScriptJobsTest, NamesTheJobsThatRunAFileAndAsWhom) {
  using propertylist::Array;
  const auto command = [](const char* script) { return Array{"/bin/sh", script}; };
  writeJob(Kind::userAgent, "mine", {{"ProgramArguments", command("/x/./script")}});
  writeJob(Kind::userAgent, "direct", {{"Program", "/x/script"}});
  writeJob(Kind::localAgent, "everyone", {{"ProgramArguments", command("/x/link")}});
  writeJob(Kind::localDaemon, "root", {{"ProgramArguments", command("/x/script")}});
  writeJob(Kind::localDaemon, "named", {{"ProgramArguments", command("/x/script")}, {"UserName", "_www"}});
  writeJob(Kind::userAgent, "other", {{"ProgramArguments", command("/x/script2")}});
  scan();
  JobsOfScript jobs(program().catalogue, program().repairs, platform, "ada");
  jobs.update({"/x/script", "/x/link"});
  const auto& found = jobs.groups();
  std::vector<std::pair<std::string, std::vector<std::string>>> byUser;
  for (const ScriptJobs& group : found) byUser.emplace_back(group.user, names(group.jobs));
  const decltype(byUser) expected{
      {"ada", {"direct", "mine"}}, {"", {"everyone"}}, {"_www", {"named"}}, {"root", {"root"}}};
  EXPECT_EQ(byUser, expected);
  EXPECT_EQ(textOf(found, foundation.localize),
            "Run by “direct” and “mine” as ada\nRun by “everyone” as each user\nRun by “named” as _www\n"
            "Run by “root” as root");
  EXPECT_EQ(textOf({}, foundation.localize), "No job runs this file.");
}

TEST_F(ScriptJobsTest, FindsTheJobsThatRunItThroughALink) {
  const auto script = folder.write("script", "#!/bin/sh\n");
  std::filesystem::create_symlink(script, folder.path() / "link");
  writeJob(Kind::userAgent, "linked", {{"Program", (folder.path() / "link").string()}});
  writeJob(Kind::userAgent, "other", {{"Program", "/nowhere/link"}});
  scan();
  JobsOfScript jobs(program().catalogue, program().repairs, platform, "ada");
  int changes = 0;
  const auto changed = jobs.changed().subscribe([&] { ++changes; });
  jobs.update({script});
  EXPECT_TRUE(jobs.jobs().empty()) << "links aren't read by the main thread";
  jobs.update({script});
  EXPECT_EQ(checkQueue.count(), 1U) << "a disk that doesn't answer holds up one task";
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(changes, 0) << "the answer to an earlier look doesn't count";
    checkQueue.runAll();
    queue.runDue();
  }
  EXPECT_EQ(names(jobs.jobs()), (std::vector<std::string>{"linked"}));
  EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace mirvel
