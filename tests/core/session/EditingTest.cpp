#include "core/session/Editing.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "core/propertylist/Writer.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

class EditingTest : public testdata::ProgramFixture {
 protected:
  EditingTest() : shell(program()) {
    writeJob(Kind::userAgent, "a", {{"Program", "/bin/ls"}});
    writeJob(Kind::userAgent, "b");
    scan();
    program().selection.select(jobNamed("a"));
  }
  Editing& editing() { return program().editing; }
  jobfile::Plist& record() { return dynamic_cast<Launchd&>(*program().selection.job()).plist(); }
  void rename(const std::string& name) {
    ASSERT_TRUE(editing().markJobChanged(Editing::Step::Continues, "name"));
    record().name = name;
  }
  void setNice(int nice) {
    ASSERT_TRUE(editing().markJobChanged());
    record().nice = nice;
  }
  bool hasChanges() { return program().editing.hasUnsavedChanges(); }

  testdata::RecordingShell shell;
};

TEST_F(EditingTest, StepsGoBackToWhatWasReadAndForwardAgain) {
  const jobfile::Plist read = record().clone();
  setNice(1);
  setNice(2);
  rename("x");
  rename("xy");
  ASSERT_TRUE(editing().markJobChanged());
  program().selection.job()->kind = Kind::localDaemon;
  const jobfile::Plist edited = record().clone();

  editing().undo();
  EXPECT_EQ(program().selection.job()->kind, Kind::userAgent);
  EXPECT_EQ(record().name, "xy");
  editing().undo();
  EXPECT_EQ(record().name, "a") << "typing without a pause is one step";
  editing().undo();
  EXPECT_EQ(record().nice, 1);
  EXPECT_TRUE(hasChanges());
  editing().undo();
  EXPECT_EQ(record(), read);
  EXPECT_FALSE(hasChanges());
  EXPECT_FALSE(editing().canUndo());
  EXPECT_EQ(shell.count("showEdit"), 4U);

  while (editing().canRedo()) editing().redo();
  EXPECT_EQ(record(), edited);
  EXPECT_EQ(program().selection.job()->kind, Kind::localDaemon);
  EXPECT_TRUE(hasChanges());
}

TEST_F(EditingTest, UnfinishedInputIsUndoneWithTheRecordAndBelongsToItsJob) {
  const auto rows = [&] { return editing().unfinished().tables["PathState"].size(); };
  const auto enter = [&](std::size_t count) {
    ASSERT_TRUE(editing().markJobChanged());
    editing().unfinished().tables["PathState"].resize(count);
  };
  enter(1);
  enter(2);
  setNice(1);
  for (const std::size_t count : {2U, 1U, 0U}) {
    editing().undo();
    EXPECT_EQ(rows(), count);
  }
  editing().redo();
  EXPECT_EQ(rows(), 1U);
  program().selection.select(jobNamed("b"));
  EXPECT_EQ(rows(), 0U);
}

TEST_F(EditingTest, OnlyTypingInOneFieldWithoutAPauseIsJoined) {
  using enum Editing::Step;
  struct Edit {
    Editing::Step step;
    const char* field;
    const char* name;
    double pause = 0;
  };
  const struct {
    std::vector<Edit> edits;
    std::vector<const char*> undone;
  } table[] = {
      {{{Continues, "name", "x"}, {Continues, "name", "xy", 1.9}}, {"a"}},
      {{{Continues, "name", "x"}, {Continues, "name", "xy", 2}}, {"x", "a"}},
      {{{Continues, "name", "x"}, {Begins, "", "y"}, {Continues, "name", "xyz"}}, {"y", "x", "a"}},
      {{{Continues, "table", "typed"},
        {Begins, "table", "deleted"},
        {Begins, "table", "deleted twice"},
        {Continues, "table", "typed again"},
        {Continues, "table", "typed on"}},
       {"deleted twice", "deleted", "typed", "a"}},
  };
  for (const auto& row : table) {
    for (const Edit& edit : row.edits) {
      clock.now += edit.pause;
      editing().markJobChanged(edit.step, edit.field)->plist().name = edit.name;
    }
    for (const char* name : row.undone) {
      editing().undo();
      EXPECT_EQ(record().name, name);
    }
    EXPECT_FALSE(editing().canUndo());
    editing().reset();
  }
}

TEST_F(EditingTest, AChangeAfterUndoForgetsWhatWasUndone) {
  setNice(1);
  editing().undo();
  EXPECT_TRUE(editing().canRedo());
  setNice(2);
  EXPECT_FALSE(editing().canRedo());
  editing().undo();
  EXPECT_EQ(record().nice, std::nullopt);
  EXPECT_FALSE(hasChanges());
}

TEST_F(EditingTest, OnlyASelectedLaunchdJobCanBeChangedAndStepsAreItsOwn) {
  setNice(1);
  program().editing.setUnsavedChanges(false);
  program().selection.select(jobNamed("b"));
  EXPECT_FALSE(editing().canUndo());
  editing().undo();
  EXPECT_EQ(record().nice, std::nullopt);
  setNice(5);
  editing().undo();
  EXPECT_FALSE(editing().canUndo());

  program().selection.select(nullptr);
  EXPECT_FALSE(editing().markJobChanged());
  EXPECT_FALSE(hasChanges());
}

TEST_F(EditingTest, NothingIsUndoneWhileASaveRuns) {
  setNice(1);
  const auto saving = program().saving.begin();
  editing().undo();
  EXPECT_EQ(record().nice, 1);
}

TEST_F(EditingTest, UndoingEverythingMakesTheScanThatTheEditsHeldBackAndCanBeRedoneAfterIt) {
  setNice(1);
  editing().undo();
  settle();
  editing().redo();
  EXPECT_EQ(record().nice, 1);
  EXPECT_TRUE(hasChanges());
  writeJob(Kind::userAgent, "new");
  editing().undo();
  EXPECT_EQ(fetchQueue.count(), 1U);
  settle();
  EXPECT_EQ(names(program().catalogue.jobs()), (std::vector<std::string>{"a", "b", "new"}));
}

TEST_F(EditingTest, AfterASaveThatFailedLateUndoingEverythingReadsTheJobAgain) {
  const auto job = program().selection.job();
  setNice(7);
  program().actions.save(std::dynamic_pointer_cast<Launchd>(job));
  (void)write(Kind::userAgent, "a.plist", helpers.requests.front().text("string"));
  helpers.requests.front().failure(Error{.code = Error::Code::Io, .message = "it couldn't be loaded"});
  editing().undo();
  EXPECT_FALSE(hasChanges());
  settle();
  EXPECT_NE(program().selection.job(), job);
  EXPECT_EQ(record().nice, 7) << "as the file has it";
}

TEST_F(EditingTest, TheContentThatASaveHasWrittenIsExpectedEvenIfScansLeaveTheJobOut) {
  const std::string written = testdata::jobText("app.mirvel.hidden");
  EXPECT_TRUE(editing().take(program().selection.launchd(), written));
  setNice(7);
  EXPECT_TRUE(editing().expectsInFile(Checksum::ofFile(written).text()));
}

TEST_F(EditingTest, AReplacedRecordIsOneStepOfTheSameJobAndIsWrittenAsGiven) {
  using propertylist::Dictionary;
  (void)writeJob(Kind::userAgent, "a", {{"Odd", "now"}, {"Even", "now"}, {"KeepAlive", Dictionary{{"Odd", 1}}}});
  scan();
  const auto job = program().selection.launchd();
  const std::string before = *job->plistData();
  const std::string checksum = job->checksum.text();
  setNice(1);
  job->kind = Kind::localAgent;
  const Dictionary given{{"Label", "a"}, {"Odd", "then"}, {"KeepAlive", Dictionary{{"Even", 2}}}, {"Nice", 5.0}};
  ASSERT_TRUE(editing().replaceRecord(*propertylist::writeXml(given)));
  EXPECT_EQ(program().selection.launchd(), job);
  EXPECT_EQ(job->plistDictionary(), given);
  EXPECT_EQ(job->originalKind, Kind::userAgent);
  EXPECT_EQ(job->kind, Kind::localAgent);
  EXPECT_EQ(editing().fileChecksum(), checksum) << "a save replaces the file that was read";
  editing().undo();
  EXPECT_EQ(record().nice, 1);
  editing().undo();
  EXPECT_EQ(*job->plistData(), before);
  EXPECT_FALSE(hasChanges());
  editing().redo();
  editing().redo();
  EXPECT_EQ(job->plistDictionary(), given);

  const auto failure = editing().replaceRecord("<plist><dict/></plist>");
  ASSERT_FALSE(failure);
  EXPECT_EQ(failure.error().code, Error::Code::MissingKey);
  EXPECT_EQ(job->plistDictionary(), given);
  program().selection.select(nullptr);
  EXPECT_EQ(editing().replaceRecord(*propertylist::writeXml(given)).error().code, Error::Code::NotFound);
}

}  // namespace
}  // namespace mirvel
