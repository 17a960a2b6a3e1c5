#include "core/session/ExtraFolders.h"

#include <gmock/gmock.h>

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// Nothing runs on the check queue until a test lets the disks answer.
class ExtraFolderLooksTest : public testdata::ProgramFixture {
 protected:
  using Names = std::vector<std::string>;
  using State = ExtraFolders::State;

  ExtraFolderLooksTest() { EXPECT_TRUE(foundation.defaults.setCheckJobs(false)); }  // it uses the same queue

  ExtraFolders& folders() { return program().extraFolders; }
  std::string make(const std::string& name) const {
    (void)folder.write(name + "/" + name + " job.plist", testdata::jobText(name + " job"));
    return folder.path() / name;
  }
  void set(const Names& paths) { ASSERT_TRUE(foundation.defaults.setFolders(paths)); }
  void passPatience() {
    queue.runFor(ExtraFolders::patience + 0.1);
    settle();
  }
  Names jobs() { return names(program().catalogue.jobs()); }
  Names watched() const {
    Names result;
    for (const auto& path : monitors.folders()) {
      if (path.parent_path() == folder.path()) result.push_back(path.filename());
    }
    return result;
  }
};

TEST_F(ExtraFolderLooksTest, ADeadFolderStopsNeitherTheStartNorLaterScans) {
  const std::string dead = make("dead");
  writeJob(Kind::userAgent, "mine");
  set({dead});
  program().appDelegate.applicationDidFinishLaunching();
  queue.runFor(0.5);
  EXPECT_EQ(fetchQueue.count(), 0U) << "there is still patience";
  passPatience();
  EXPECT_EQ(jobs(), Names{"mine"});
  EXPECT_THAT(watched(), IsEmpty());
  EXPECT_EQ(folders().state(dead), State::Late);

  program().fetcher.fetchJobs();
  EXPECT_EQ(fetchQueue.count(), 1U) << "at once";
  EXPECT_EQ(checkQueue.count(), 1U) << "one look waits, not one for each scan";
  settle();

  settleFolders();
  EXPECT_EQ(jobs(), (Names{"mine", "dead job"})) << "it has answered after all";
  EXPECT_THAT(watched(), ElementsAre("dead"));
}

TEST_F(ExtraFolderLooksTest, AFolderThatStopsAnsweringIsLeftOutUntilItAnswers) {
  const std::string a = make("a"), b = make("b");
  writeJob(Kind::userAgent, "mine");
  set({a});
  program().fetcher.fetchJobs();
  settleFolders();
  EXPECT_EQ(jobs(), (Names{"mine", "a job"}));
  set({a, b});
  EXPECT_EQ(folders().state(b), State::Unknown);
  passPatience();
  EXPECT_EQ(jobs(), Names{"mine"});
  EXPECT_EQ(folders().state(a), State::Late) << "although it has answered before";
  checkQueue.runAll();
  settle();
  EXPECT_EQ(jobs(), (Names{"mine", "a job", "b job"}));
  EXPECT_EQ(checkQueue.count(), 0U) << "a late answer is used, so that slow folders don't leave each other out forever";
}

TEST_F(ExtraFolderLooksTest, ALateAnswerDoesntReplaceAnEdit) {
  const std::string a = make("a"), b = make("b");
  set({a});
  program().fetcher.fetchJobs();
  passPatience();
  set({a, b});
  program().fetcher.fetchJobs();
  program().editing.setUnsavedChanges(true);
  settleFolders();
  EXPECT_EQ(jobs(), Names{}) << "the scan that had begun is dropped";
  program().editing.setUnsavedChanges(false);
  program().fetcher.refresh();
  settleFolders();
  EXPECT_EQ(jobs(), (Names{"a job", "b job"}));
}

TEST_F(ExtraFolderLooksTest, OnlyTheLastOfSeveralScansFollowsTheAnswers) {
  set({make("a")});
  program().fetcher.fetchJobs();
  program().fetcher.fetchJobs();
  EXPECT_TRUE(program().scanning.isBusy());
  checkQueue.runAll();
  queue.runDue();
  EXPECT_EQ(fetchQueue.count(), 1U);
  settle();
  EXPECT_FALSE(program().scanning.isBusy());
}

TEST_F(ExtraFolderLooksTest, TheAnswerOfAFolderThatWasRemovedIsDropped) {
  const std::string a = make("a"), gone = folder.path() / "gone";
  (void)program();
  set({gone});
  set({});
  set({gone, a});
  fs::create_directory(gone);
  checkQueue.runAll();
  queue.runDue();
  EXPECT_EQ(folders().failure(gone), 0);
  EXPECT_THAT(folders().answered(), ElementsAre(fs::path(gone), fs::path(a)));
  fs::remove_all(gone);
  folders().check();
  checkQueue.runAll();
  queue.runDue();
  EXPECT_EQ(folders().failure(gone), ENOENT);
  EXPECT_THAT(folders().answered(), ElementsAre(fs::path(gone), fs::path(a))) << "that is an answer, too";
}

TEST_F(ExtraFolderLooksTest, AnAnswerAfterTheEndOfTheProgramIsDropped) {
  set({make("a")});
  program().fetcher.fetchJobs();
  endProgram();
  checkQueue.runAll();
  queue.runFor(5);
}

}  // namespace
}  // namespace mirvel
