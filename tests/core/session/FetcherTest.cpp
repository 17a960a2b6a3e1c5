#include "core/session/Fetcher.h"

#include <gmock/gmock.h>

#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testdata::jobText;
using testing::ElementsAre;
using testing::IsSupersetOf;
using Names = std::vector<std::string>;

class FetcherTest : public testdata::ProgramFixture {
 protected:
  FetcherTest() {
    writeJob(Kind::userAgent, "a");
    writeJob(Kind::userAgent, "b");
  }

  void select(const std::string& name) { program().selection.select(jobNamed(name)); }
  /// Scans, and expects these events after those of every scan.
  template <typename... Events>
  void expectScan(const Events&... events) {
    shell.events.clear();
    scan();
    EXPECT_THAT(shell.events, ElementsAre("loading", "busy", "loaded", "idle", events...));
  }

  testdata::RecordingShell shell{program()};
  int jobUpdates = 0;
  std::size_t jobsWhenUpdated = 0;
  Subscription loading = program().notifications.loadingChanged.subscribe(
      [this] { shell.note(program().scanning.isBusy() ? "loading" : "loaded"); });
  Subscription updated = program().notifications.jobsUpdated.subscribe([this] {
    ++jobUpdates;
    jobsWhenUpdated = program().catalogue.jobs().size();
    shell.note("jobsUpdated");
  });
};

TEST_F(FetcherTest, APublicationUpdatesTheModeBeforeTheCatalogueAndTheRestAfter) {
  program().fetcher.fetchJobs();
  EXPECT_TRUE(program().scanning.isBusy() && !program().saving.isBusy());
  settle();
  EXPECT_THAT(shell.events, ElementsAre("loading", "busy", "loaded", "idle", "update, catalogue of 0", "jobsUpdated",
                                        "validateVisibleItems"));
  EXPECT_EQ(names(shell.shown), (Names{"a", "b"}));
  EXPECT_EQ(jobsWhenUpdated, 2U);
  EXPECT_FALSE(program().scanning.isBusy());
}

TEST_F(FetcherTest, AScanThatFindsTheSameJobsReportsOnlyItsEnd) {
  scan();
  const Jobs before = program().catalogue.jobs();
  expectScan();
  EXPECT_EQ(program().catalogue.jobs(), before);
}

TEST_F(FetcherTest, OfTwoScansInARowOneIsPublished) {
  program().fetcher.fetchJobs();
  program().fetcher.fetchJobs();
  settle();
  EXPECT_EQ(shell.count("update, catalogue of 0"), 1U);
  EXPECT_EQ(jobUpdates, 1);

  // The first scan has ended, and its result waits for the main thread.
  writeJob(Kind::userAgent, "c");
  shell.events.clear();
  program().fetcher.fetchJobs();
  fetchQueue.runAll();
  program().fetcher.fetchJobs();
  queue.runDue();
  EXPECT_TRUE(program().scanning.isBusy()) << "the second goes on";
  settle();
  EXPECT_THAT(shell.events, ElementsAre("loading", "busy", "loading", "busy", "loaded", "idle",
                                        "update, catalogue of 2", "jobsUpdated"));
}

TEST_F(FetcherTest, AJobThatIsToBeReadAgainMakesTheNextScanPublish) {
  scan();
  const auto edited = jobNamed("a");
  edited->readAgain();
  scan();
  EXPECT_EQ(jobUpdates, 2);
  EXPECT_NE(jobNamed("a"), edited);
  EXPECT_FALSE(jobNamed("a")->isToBeReadAgain());
}

TEST_F(FetcherTest, TheOldCatalogueIsReleasedOnceANewOneExists) {
  scan();
  const std::weak_ptr<Job> old = program().catalogue.jobs().front();
  writeJob(Kind::userAgent, "c");
  scan();
  EXPECT_TRUE(old.expired());
}

TEST_F(FetcherTest, AChangedJobStaysSelectedAsItNowIs) {
  scan();
  select("b");
  const auto before = program().selection.job();
  (void)write(Kind::userAgent, "b.plist", jobText("b") + " ");
  expectScan("update, catalogue of 2", "select b.plist", "title Mirvel – b", "updateDetail", "jobsUpdated");
  EXPECT_EQ(program().selection.job(), jobNamed("b"));
  EXPECT_NE(program().selection.job(), before);
}

TEST_F(FetcherTest, ARemovedJobIsNoLongerSelectedAndAnotherScanFollows) {
  scan();
  select("b");
  std::filesystem::remove(path(Kind::userAgent, "b.plist"));
  expectScan("update, catalogue of 2", "clearDetail", "title Mirvel", "updateDetail", "loading", "busy", "jobsUpdated",
             "loaded", "idle");
  EXPECT_FALSE(program().selection.job());
}

TEST_F(FetcherTest, AFilterOutlastsAScanAndHidesNothingFromTheSelection) {
  writeJob(Kind::userAgent, "zap1");
  scan();
  select("b");
  program().currentMode.setFilter(program().catalogue.jobs(), "ZAP");
  writeJob(Kind::userAgent, "zap2");
  (void)write(Kind::userAgent, "b.plist", jobText("b") + " ");
  shell.events.clear();
  scan();
  EXPECT_EQ(names(shell.shown), (Names{"zap1", "zap2"}));
  EXPECT_THAT(shell.events, IsSupersetOf({"update, catalogue of 3", "deselect", "select b.plist"}));
  EXPECT_EQ(program().selection.job(), jobNamed("b"));
  EXPECT_EQ(program().currentMode.filter(), "ZAP");
}

TEST_F(FetcherTest, EditsThatBeginDuringAScanAreKeptAndTheCatalogueWaits) {
  scan();
  select("b");
  std::filesystem::remove(path(Kind::userAgent, "b.plist"));
  shell.events.clear();
  program().fetcher.fetchJobs();
  program().editing.setUnsavedChanges(true);
  settle();
  EXPECT_THAT(shell.events, ElementsAre("loading", "busy", "loaded", "idle"));
  EXPECT_EQ(names(program().catalogue.jobs()), (Names{"a", "b"}));
  EXPECT_TRUE(program().selection.job());

  program().editing.setUnsavedChanges(false);
  scan();
  EXPECT_EQ(names(program().catalogue.jobs()), Names{"a"});
}

TEST_F(FetcherTest, AnIconOfTheSelectedJobIsDrawnWhenItComes) {
  scan();
  select("b");
  (void)folder.write("support/Icons/" + *jobNamed("b")->iconStoreName() + ".png", "");
  writeJob(Kind::userAgent, "c");
  shell.events.clear();
  scan();
  EXPECT_TRUE(program().selection.job()->customIcon);
  EXPECT_THAT(shell.events, IsSupersetOf({"select b.plist", "updateIcon", "reloadJob b", "jobsUpdated"}));
}

TEST_F(FetcherTest, AProgramWithoutAShellScansAllTheSame) {
  program().shell = {};
  EXPECT_EQ(names(scan()), (Names{"a", "b"}));
  select("b");
  std::filesystem::remove(path(Kind::userAgent, "b.plist"));
  scan();
  EXPECT_FALSE(program().selection.job());
}

using FetcherEndTest = testdata::ProgramFixture;

TEST_F(FetcherEndTest, ScansThatOutliveTheProgramAreDropped) {
  int asked = 0;
  loginItems.whenAsked = [&] { ++asked; };
  program().fetcher.fetchJobs();
  fetchQueue.runAll();
  program().fetcher.fetchJobs();
  endProgram();
  settle();
  EXPECT_EQ(asked, 1) << "the second had not begun";
}

}  // namespace
}  // namespace mirvel
