#include "core/app/JobMoves.h"

#include <gmock/gmock.h>

#include <fstream>

#include "core/catalogue/CustomIcons.h"
#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;

class JobMovesTest : public testdata::ProgramFixture {
 protected:
  JobMovesTest() { writeJob(Kind::userAgent, "a"); }

  URL at(Kind kind, const std::string& name) const { return URL::file(path(kind, name)); }
  fs::path iconOf(const URL& url) const { return customIconFile(roots.applicationSupport, *iconStoreName(url)); }
  /// Gives the selected job a note, a revision and an icon.
  void giveEverything() {
    const auto job = program().selection.job();
    program().notes.setNote(job->url, "my note");
    program().revisions.saveRevision(dynamic_cast<Launchd&>(*job));
    fs::create_directories(iconOf(job->url).parent_path());
    std::ofstream(iconOf(job->url)) << "picture";
    queue.runFor(1);
  }
  bool hasEverything(const URL& url) {
    return program().notes.note(url) == "my note" && program().revisions.revisions().find(url.text()) &&
           testdata::bytes(iconOf(url)) == "picture";
  }
  bool hasAnything(const URL& url) {
    return program().notes.has(url) || program().revisions.revisions().find(url.text()) || fs::exists(iconOf(url));
  }
  void select(const std::string& name) { program().selection.select(jobNamed(name)); }
  void rename(const URL& from, const URL& to) const {
    fs::create_directories(to.path().parent_path());
    fs::rename(from.path(), to.path());
  }

  const URL old = at(Kind::userAgent, "a.plist");
};

TEST_F(JobMovesTest, NotesRevisionsAndIconsFollowAMovedFile) {
  for (const bool isRunning : {true, false}) {
    for (const URL& to : {at(Kind::userAgent, "renamed.plist"), at(Kind::localAgent, "a.plist")}) {
      fs::remove_all(roots.applicationSupport);
      scan();
      select("a");
      giveEverything();
      ASSERT_TRUE(hasEverything(old));
      if (isRunning) scan();
      if (!isRunning) endProgram();
      rename(old, to);
      scan();
      EXPECT_TRUE(hasEverything(to)) << to.text() << isRunning;
      EXPECT_FALSE(hasAnything(old)) << to.text() << isRunning;
      EXPECT_TRUE(jobNamed("a")->customIcon) << "shown at once";
      rename(to, old);
      scan();
      EXPECT_TRUE(hasEverything(old)) << "and back";
    }
  }
}

TEST_F(JobMovesTest, AnotherJobOfTheSameLabelInheritsNothing) {
  for (const bool hasItsOwn : {false, true}) {
    fs::remove_all(roots.applicationSupport);
    const URL other = at(Kind::localDaemon, "a.plist");
    writeJob(Kind::userAgent, "a");
    writeJob(Kind::localDaemon, "a");
    scan();
    program().selection.select(program().catalogue.jobAt(old));
    giveEverything();
    if (hasItsOwn) {
      fs::create_directories(iconOf(other).parent_path());
      std::ofstream(iconOf(other)) << "another picture";
    }
    scan();
    fs::remove(old.path());
    scan();
    EXPECT_EQ(fs::exists(iconOf(other)), hasItsOwn);
    EXPECT_FALSE(program().notes.has(other));
    EXPECT_TRUE(hasEverything(old)) << "for a job that is restored";
  }
}

TEST_F(JobMovesTest, ASaveThatMovesTheFileMovesEverything) {
  struct Row {
    Kind from;
    Kind to;
    const char* label;
  };
  for (const Row& row : {Row{Kind::userAgent, Kind::localDaemon, "a"}, Row{Kind::localDaemon, Kind::userAgent, "a"},
                         Row{Kind::userAgent, Kind::localDaemon, "another name"}}) {
    for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) fs::remove_all(path(kind));
    fs::create_directories(path(row.to));
    fs::remove_all(roots.applicationSupport);
    writeJob(row.from, "a");
    scan();
    select("a");
    giveEverything();
    const auto job = program().selection.launchd();
    job->kind = row.to;
    job->plist().name = row.label;
    helpers.requests.clear();
    program().actions.save(job);
    for (std::size_t i = 0; i < helpers.requests.size(); ++i) {
      const auto request = helpers.requests[i];
      if (request.body.find("deletePath")) fs::remove(request.text("deletePath"));
      if (request.body.find("string")) std::ofstream(request.text("path")) << request.text("string");
      request.reply({});
    }
    program().editing.setUnsavedChanges(false);
    scan();
    EXPECT_TRUE(hasEverything(at(row.to, "a.plist"))) << row.from.name() << " " << row.label;
    EXPECT_FALSE(hasAnything(at(row.from, "a.plist"))) << row.from.name() << " " << row.label;
  }
}

TEST_F(JobMovesTest, ANoteTypedJustBeforeTheEndFollowsTheFile) {
  scan();
  select("a");
  program().notes.setNote(old, "last words");
  endProgram();
  rename(old, at(Kind::userAgent, "b.plist"));
  scan();
  EXPECT_EQ(program().notes.note(at(Kind::userAgent, "b.plist")), "last words");
}

TEST_F(JobMovesTest, NothingFollowsUnlessTheFileHasCertainlyMoved) {
  struct Row {
    const char* name;
    std::function<void()> change;
  };
  const Row table[] = {
      {"copied", [&] { writeJob(Kind::localAgent, "a"); }},
      {"deleted", [&] { fs::remove(old.path()); }},
      {"another label in its place",
       [&] {
         fs::remove(old.path());
         writeJob(Kind::userAgent, "other");
       }},
      {"two candidates",
       [&] {
         fs::remove(old.path());
         writeJob(Kind::localAgent, "a");
         writeJob(Kind::localDaemon, "a");
       }},
      {"can't be read as a job for the moment", [&] { write(Kind::userAgent, "a.plist", "half a file"); }},
  };
  for (const Row& row : table) {
    for (const Kind kind : {Kind::userAgent, Kind::localAgent, Kind::localDaemon}) fs::remove_all(path(kind));
    writeJob(Kind::userAgent, "a");
    scan();
    select("a");
    giveEverything();
    scan();
    row.change();
    scan();
    EXPECT_TRUE(hasEverything(old)) << row.name;
  }
}

TEST_F(JobMovesTest, AFileWithANameInNoEncodingKeepsItsNote) {
  const URL odd = at(Kind::userAgent, "odd\xff.plist");
  write(Kind::userAgent, "odd\xff.plist", testdata::jobText("odd"));
  scan();
  select("odd");
  program().notes.setNote(odd, "kept");
  endProgram();
  scan();
  EXPECT_EQ(program().notes.note(odd), "kept");
}

class MovedSelectionTest : public JobMovesTest {
 protected:
  testdata::RecordingShell shell{program()};
};

TEST_F(MovedSelectionTest, TheJobOfARenamedFileStaysSelected) {
  scan();
  select("a");
  const URL now = at(Kind::userAgent, "z.plist");
  rename(old, now);
  shell.events.clear();
  scan();
  ASSERT_TRUE(program().selection.job());
  EXPECT_EQ(program().selection.job(), jobNamed("a"));
  EXPECT_EQ(program().selection.job()->url.text(), now.text());
  EXPECT_THAT(shell.events, Contains("select z.plist"));
  EXPECT_THAT(shell.events, testing::Not(Contains("clearDetail")));
}

TEST_F(MovedSelectionTest, AnOlderCopyIsNotTheMovedJob) {
  writeJob(Kind::localAgent, "a");
  scan();
  program().selection.select(program().catalogue.jobAt(old));
  fs::remove(old.path());
  scan();
  EXPECT_FALSE(program().selection.job());
}

}  // namespace
}  // namespace mirvel
