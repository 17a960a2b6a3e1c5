#include "core/editor/JobProblems.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

class JobProblemsTest : public testdata::ProgramFixture {
 protected:
  /// A job without problems, except for these keys.
  std::filesystem::path writeLinted(const std::string& label, Dictionary keys = {}) const {
    keys.set("ProgramArguments", Array{"/bin/sh"});
    keys.set("RunAtLoad", true);
    return writeJob(Kind::userAgent, label, std::move(keys));
  }
  void select(const std::string& name) { program().selection.select(jobNamed(name)); }
  jobfile::Plist& edit() { return program().editing.markJobChanged()->plist(); }

  /// Runs the checks that were asked for, and delivers their answers.
  void answer() {
    checkQueue.runAll();
    queue.runDue();
  }
  /// Lets everything come to rest: the selected job, and the catalogue in the background.
  void finishChecks() {
    for (int i = 0; i < 20; ++i) {
      queue.runFor(1);
      answer();
    }
  }
  static Texts texts(const JobProblems& problems) {
    Texts result;
    for (const lint::Finding& finding : problems.findings()) result.push_back(finding.text());
    return result;
  }
  /// Without lines.
  Texts fields() {
    Texts result;
    for (const lint::Finding& finding : program().problems.findings()) result.push_back(finding.field());
    return result;
  }
};

TEST_F(JobProblemsTest, TypingIsCheckedOnceItPauses) {
  writeLinted("a");
  scan();
  select("a");
  finishChecks();
  EXPECT_THAT(fields(), IsEmpty());

  int changes = 0;
  const Subscription changed = program().problems.changed().subscribe([&] { ++changes; });
  for (int i = 0; i < 5; ++i) {
    edit().nice = 99;
    queue.runFor(0.2);
    EXPECT_EQ(checkQueue.count(), 0U) << i;
  }
  queue.runFor(0.5);
  EXPECT_EQ(checkQueue.count(), 1U);
  answer();
  EXPECT_EQ(fields(), Texts{"Nice"});
  EXPECT_EQ(changes, 1);

  edit().nice = 5;
  queue.runFor(0.5);
  answer();
  EXPECT_THAT(fields(), IsEmpty());
  EXPECT_EQ(changes, 2);

  edit().run = "/bin/sh '";  // the command is checked as it is edited
  program().editing.undo();
  program().editing.undo();
  queue.runFor(0.5);
  answer();
  EXPECT_EQ(fields(), Texts{"Nice"});
}

TEST_F(JobProblemsTest, AnAnswerAboutAnOlderStateOrAnotherJobIsDropped) {
  writeLinted("a");
  writeLinted("b");
  scan();
  select("a");
  finishChecks();

  edit().nice = 99;
  queue.runFor(0.5);
  ASSERT_EQ(checkQueue.count(), 1U);
  edit().nice = 5;
  answer();
  EXPECT_THAT(fields(), IsEmpty()) << "the nice value isn't 99 any more";
  queue.runFor(0.5);
  answer();
  EXPECT_THAT(fields(), IsEmpty());

  edit().nice = 99;
  queue.runFor(0.5);
  ASSERT_EQ(checkQueue.count(), 1U);
  program().editing.setUnsavedChanges(false);
  select("b");
  answer();
  EXPECT_THAT(fields(), IsEmpty()) << "about a";
  finishChecks();
  EXPECT_THAT(fields(), IsEmpty());
}

TEST_F(JobProblemsTest, TheSelectedJobHasItsFindingsAtOnceIfTheyAreKnown) {
  writeLinted("a", {{"Nice", 99}});
  scan();
  finishChecks();
  select("a");
  EXPECT_EQ(fields(), Texts{"Nice"});
  program().selection.select(nullptr);
  EXPECT_THAT(fields(), IsEmpty());
}

TEST_F(JobProblemsTest, ASlowDiskHoldsUpOnlyWhatDependsOnIt) {
  writeLinted("a", {{"Nice", 99}, {"StandardInPath", "/slow/file"}});
  scan();
  finishChecks();
  JobProblems* shown = nullptr;
  Texts meanwhile;
  lint::TargetMachine machine;
  machine.fileType = [&](const std::string& path) {
    if (path != "/slow/file") return lint::TargetMachine::FileType::Unknown;
    queue.runFor(1);  // the main thread goes on while the disk is asked
    meanwhile = texts(*shown);
    return lint::TargetMachine::FileType::Missing;
  };
  JobProblems problems(program().session, machine);
  shown = &problems;
  select("a");
  queue.runFor(0.3);
  answer();
  const std::string nice = "warning: line 8, column 2: Nice: 99 is out of range (-20 to 20)";
  EXPECT_EQ(meanwhile, Texts{nice});
  EXPECT_THAT(
      texts(problems),
      ElementsAre(nice, "warning: line 16, column 2: StandardInPath: /slow/file doesn't exist on this machine"));
}

TEST_F(JobProblemsTest, ChecksCanBeSwitchedOff) {
  const testdata::RecordingShell shell(program());
  writeLinted("a", {{"Nice", 99}});
  writeLinted("b");
  scan();
  select("a");
  finishChecks();
  program().currentMode.setSubset(program().catalogue.jobs(), JobSubset::WithProblems);
  EXPECT_EQ(names(shell.shown), Texts{"a"});

  edit().nice = 98;
  queue.runFor(0.5);
  program().problems.setOn(false);
  answer();
  EXPECT_FALSE(foundation.defaults.checkJobs());
  EXPECT_THAT(fields(), IsEmpty());
  EXPECT_FALSE(program().problems.hasProblems(*jobNamed("a")));
  EXPECT_EQ(names(shell.shown), (Texts{"a", "b"}));
  EXPECT_FALSE(program().currentMode.subset());
  edit().nice = 97;
  queue.runFor(5);
  EXPECT_EQ(checkQueue.count(), 0U);

  program().problems.setOn(true);
  finishChecks();
  EXPECT_EQ(fields(), Texts{"Nice"});
}

TEST_F(JobProblemsTest, OnlyChangedFilesAreCheckedAgainInTheBackground) {
  writeLinted("a", {{"Nice", 99}});
  writeLinted("b");
  writeLinted("c");
  scan();
  queue.runFor(0.9);
  EXPECT_EQ(checkQueue.count(), 0U) << "not while the window is being filled";
  queue.runFor(0.2);
  EXPECT_EQ(checkQueue.count(), 1U) << "one at a time";
  queue.runFor(2);
  EXPECT_EQ(checkQueue.count(), 2U) << "a disk that doesn't answer holds up nobody";
  finishChecks();
  EXPECT_TRUE(program().problems.hasProblems(*jobNamed("a")));
  EXPECT_FALSE(program().problems.hasProblems(*jobNamed("b")));

  writeLinted("b", {{"Nice", -99}});
  scan();
  EXPECT_FALSE(program().problems.hasProblems(*jobNamed("b"))) << "not known yet";
  EXPECT_TRUE(program().problems.hasProblems(*jobNamed("a")));
  queue.runFor(1);
  EXPECT_EQ(checkQueue.count(), 1U);
  answer();
  queue.runFor(5);
  EXPECT_EQ(checkQueue.count(), 0U);
  EXPECT_TRUE(program().problems.hasProblems(*jobNamed("b")));

  for (int i = 0; i < 3; ++i) {
    writeLinted("c", {{"Nice", i}});
    scan();
    queue.runFor(0.5);
  }
  EXPECT_GT(checkQueue.count(), 0U) << "a file that changes all the time doesn't postpone the checks forever";
}

TEST_F(JobProblemsTest, TheFilterFollowsTheResultsButKeepsTheSelectedJob) {
  testdata::RecordingShell shell(program());
  writeLinted("a", {{"Nice", 99}});
  writeLinted("b", {{"Nice", 98}});
  writeLinted("c");
  scan();
  program().currentMode.setSubset(program().catalogue.jobs(), JobSubset::WithProblems);
  EXPECT_THAT(names(shell.shown), IsEmpty());
  finishChecks();
  EXPECT_EQ(names(shell.shown), (Texts{"a", "b"}));
  program().currentMode.setFilter(program().catalogue.jobs(), "98");
  EXPECT_EQ(names(shell.shown), Texts{"b"}) << "both filters";
  program().currentMode.setFilter(program().catalogue.jobs(), "");
  EXPECT_EQ(names(shell.shown), (Texts{"a", "b"}));

  select("a");
  writeLinted("a");
  writeLinted("b");
  writeLinted("c", {{"Nice", 97}});
  scan();
  finishChecks();
  EXPECT_EQ(names(shell.shown), (Texts{"a", "c"}));
  EXPECT_EQ(program().selection.job(), jobNamed("a"));

  program().selection.select(nullptr);
  program().currentMode.setSubset(program().catalogue.jobs(), std::nullopt);
  EXPECT_EQ(names(shell.shown), (Texts{"a", "b", "c"}));
}

TEST_F(JobProblemsTest, TheViewIsLeftAloneWhileThereAreUnsavedChanges) {
  testdata::RecordingShell shell(program());
  writeLinted("a");
  writeLinted("b", {{"Nice", 99}});
  scan();
  select("a");
  edit().nice = 5;
  program().currentMode.setSubset(program().catalogue.jobs(), JobSubset::WithProblems);
  shell.events.clear();
  finishChecks();
  EXPECT_EQ(shell.count("update, catalogue of 2"), 0U);
  program().editing.setUnsavedChanges(false);
  EXPECT_EQ(names(shell.shown), (Texts{"a", "b"}));
}

TEST_F(JobProblemsTest, AFixIsOneEditAndLeavesOtherInputAlone) {
  const testdata::RecordingShell shell(program());
  writeLinted("a", {{"StandardOutputPath", "/tmp/a"}, {"Odd", Dictionary{{"x", 1}}}});
  scan();
  select("a");
  finishChecks();
  ASSERT_EQ(fields(), (Texts{"Odd", "StandardOutputPath"}));
  const auto fix = program().problems.findings().back().fix;
  ASSERT_TRUE(fix);

  edit().run = "/bin/sh -x";
  program().editing.unfinished().texts = {{"Nice", "5x"}};
  ASSERT_TRUE(applyFix(program().session, program().saving, *fix));
  const jobfile::Plist& record = program().selection.launchd()->plist();
  EXPECT_EQ(record.standardOutPath, "/tmp/a");
  EXPECT_EQ(record.unknownKeys, Texts{"Odd"});
  EXPECT_EQ(record.programArguments, (Texts{"/bin/sh", "-x"}));
  EXPECT_EQ(program().editing.unfinished().texts.at("Nice"), "5x");
  EXPECT_GT(shell.count("showEdit"), 0U);
  EXPECT_FALSE(applyFix(program().session, program().saving, *fix)) << "that key is gone";

  program().editing.undo();
  EXPECT_EQ(record.standardOutPath, std::nullopt);
  EXPECT_EQ(record.unknownKeys, (Texts{"Odd", "StandardOutputPath"}));
  program().selection.select(nullptr);
  EXPECT_FALSE(applyFix(program().session, program().saving, *fix));
}

TEST_F(JobProblemsTest, AFixLeavesJobsAloneThatCantBeEditedNow) {
  const Dictionary keys{{"ProgramArguments", Array{"/bin/sh"}}, {"StandardOutputPath", "/tmp/a"}};
  const auto fix = lint::Fix::rename({"StandardOutputPath"}, "StandardOutPath");
  writeJob(Kind::userAgent, "a", keys);
  writeJob(Kind::systemDaemon, "s", keys);
  EXPECT_TRUE(foundation.defaults.setShowSystemJobs(true));
  scan();
  select("s");
  EXPECT_FALSE(applyFix(program().session, program().saving, fix));
  select("a");
  {
    const auto saving = program().saving.begin();
    EXPECT_FALSE(applyFix(program().session, program().saving, fix));
  }
  EXPECT_FALSE(program().editing.hasUnsavedChanges());
  EXPECT_TRUE(applyFix(program().session, program().saving, fix));
}

TEST(ProblemSummaryTest, ErrorsAndWarningsAreCounted) {
  const Localize localize("en");
  const lint::Finding error{.severity = lint::Severity::Error};
  const lint::Finding warning;
  const std::pair<JobProblems::Findings, const char*> table[] = {
      {{}, ""},
      {{warning}, "1 warning"},
      {{error, error}, "2 errors"},
      {{warning, error, warning}, "1 error, 2 warnings"},
  };
  for (const auto& [findings, text] : table) EXPECT_EQ(problemSummary(findings, localize), text);
}

}  // namespace
}  // namespace mirvel
