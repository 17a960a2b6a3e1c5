#include "core/app/JobURLOpener.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::IsEmpty;

class JobURLOpenerTest : public testdata::ProgramFixture {
 protected:
  void open(const std::vector<std::string>& urls) { program().jobURLOpener.applicationOpenURLs(urls); }

  testdata::RecordingShell shell{program()};
};

TEST_F(JobURLOpenerTest, SelectsTheJobOfTheFirstURLAfterAMoment) {
  scan();
  const std::string host = "L2Ev////++++L2pvYi5wbGlzdA==";
  const std::string url = "mirvel://" + host;
  ASSERT_EQ(JobAddress{.path = "/a/\xff\xff\xff\xfb\xef\xbe/job.plist"}.url(), url);
  const struct {
    std::vector<std::string> urls;
    bool selects;
  } table[] = {
      {{url}, true},
      {{url + "/"}, true},
      {{"mirvel://L2Ev%2F%2f//%2B+++L2pvYi5wbGlzdA%3D%3d"}, true},
      {{url, JobAddress{.path = "/second.plist"}.url()}, true},
      {{}, false},
      {{""}, false},
      {{"/a/b.plist"}, false},
      {{host}, false},
      {{"://" + host}, false},
      {{"file://" + host, url}, false},
      {{"mirvelous://" + host}, false},
      {{"mirvel:" + host}, false},
      {{"mirvel://"}, false},
      {{"mirvel:///"}, false},
      {{"mirvel://not base64"}, false},
      {{url + "?query"}, false},
  };
  for (const auto& row : table) {
    shell.events.clear();
    open(row.urls);
    queue.runFor(0.29);
    EXPECT_THAT(shell.events, IsEmpty());
    queue.runFor(0.02);
    const auto expected = row.selects ? std::vector<std::string>{"select job.plist"} : std::vector<std::string>{};
    EXPECT_EQ(shell.events, expected) << (row.urls.empty() ? "" : row.urls[0]);
  }
}

TEST_F(JobURLOpenerTest, TheFragmentOpensTheLogOfThatJobOnly) {
  const auto file = writeJob(Kind::userAgent, "job");
  scan();
  int opened = 0;
  program().shell.sheets[Sheet::Log] = [&] { ++opened; };
  const std::string url = JobAddress{.path = file, .part = JobAddress::Part::Log}.url();
  EXPECT_TRUE(url.ends_with("#log"));
  const std::string job = JobAddress{.path = file}.url(), other = JobAddress{.path = "/gone"}.url();
  const std::pair<std::string, int> table[] = {
      {job, 0}, {url, 1}, {job + "/#log", 1}, {job + "#other", 0}, {job + "#", 0}, {other + "#log", 0}};
  for (const auto& [opens, count] : table) {
    opened = 0;
    open({opens});
    queue.runFor(1);
    EXPECT_EQ(opened, count) << opens;
  }
}

TEST_F(JobURLOpenerTest, AFilterThatHidesTheJobIsCleared) {
  const auto file = writeJob(Kind::userAgent, "job");
  writeJob(Kind::userAgent, "other");
  scan();
  const auto selectedAfter = [&](const std::function<void(CurrentMode&)>& limit) {
    program().selection.select(jobNamed("other"));
    limit(program().currentMode);
    shell.events.clear();
    open({JobAddress{.path = file}.url()});
    queue.runFor(1);
    const auto job = program().selection.job();
    return job ? job->name : "";
  };
  const Jobs& jobs = program().catalogue.jobs();
  EXPECT_EQ(selectedAfter([&](CurrentMode& mode) { mode.setFilter(jobs, "job.plist"); }), "job");
  EXPECT_EQ(program().currentMode.filter(), "job.plist") << "it doesn't hide the job";
  EXPECT_EQ(selectedAfter([&](CurrentMode& mode) { mode.setFilter(jobs, "other"); }), "job");
  EXPECT_EQ(program().currentMode.filter(), "");
  EXPECT_EQ(shell.count("clearFilter"), 1U);
  EXPECT_EQ(selectedAfter([&](CurrentMode& mode) { mode.setSubset(jobs, JobSubset::Running); }), "job");
  EXPECT_FALSE(program().currentMode.subset());
}

TEST_F(JobURLOpenerTest, AHiddenJobOfTheSystemIsOffered) {
  writeJob(Kind::userAgent, "other");
  const auto file = writeJob(Kind::systemDaemon, "job");
  scan();
  open({JobAddress{.path = file}.url()});
  queue.runFor(1);
  ASSERT_EQ(interface.sheets.size(), 1U);
  interface.answerSheet(Interface::defaultButton);
  settle();
  EXPECT_FALSE(foundation.defaults.showSystemJobs());
  open({JobAddress{.path = file}.url()});
  queue.runFor(1);
  interface.answerSheet(Interface::alternateButton);
  settle();
  EXPECT_TRUE(foundation.defaults.showSystemJobs());
  ASSERT_TRUE(program().selection.job());
  EXPECT_EQ(program().selection.job()->name, "job");
}

TEST_F(JobURLOpenerTest, AJobIsDisabledOnlyOnceTheUserHasConfirmedIt) {
  const auto file = writeJob(Kind::userAgent, "job");
  const auto disabled = writeJob(Kind::userAgent, "disabled", {{"Disabled", true}});
  scan();
  const auto openAndAnswer = [&](const std::filesystem::path& path, int button) {
    const auto before = interface.sheets.size();
    const std::string url = JobAddress{.path = path, .part = JobAddress::Part::Disable}.url();
    EXPECT_TRUE(url.ends_with("#disable"));
    open({url});
    queue.runFor(1);
    if (interface.sheets.size() == before) return false;
    EXPECT_EQ(shell.count("save"), 0U);
    interface.answerSheet(button);
    settle();
    return true;
  };
  EXPECT_FALSE(openAndAnswer("/gone", Interface::alternateButton)) << "another job is selected, or none";
  EXPECT_FALSE(openAndAnswer(disabled, Interface::alternateButton));
  EXPECT_EQ(program().selection.job()->name, "disabled");
  EXPECT_TRUE(openAndAnswer(file, Interface::defaultButton));
  EXPECT_EQ(shell.count("save"), 0U);
  EXPECT_TRUE(openAndAnswer(file, Interface::alternateButton));
  EXPECT_EQ(shell.count("save"), 1U);
  EXPECT_EQ(program().selection.launchd()->plist().disabled, true);
}

TEST_F(JobURLOpenerTest, AJobThatCantBeChangedIsntDisabledAndTheReasonIsTold) {
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  const auto file = writeJob(Kind::systemDaemon, "job");
  scan();
  open({JobAddress{.path = file, .part = JobAddress::Part::Disable}.url()});
  queue.runFor(1);
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_EQ(interface.errors[0].second, "This job can’t be changed.");
  EXPECT_EQ(interface.sheets.size(), 0U);
}

TEST_F(JobURLOpenerTest, UnsavedChangesDropTheURLWithAQuestion) {
  scan();
  program().editing.setUnsavedChanges(true);
  open({JobAddress{.path = "/job.plist"}.url()});
  program().editing.setUnsavedChanges(false);
  shell.events.clear();
  queue.runFor(5);
  EXPECT_THAT(shell.events, IsEmpty());
  EXPECT_EQ(interface.sheets.size(), 1U);
}

TEST_F(JobURLOpenerTest, TheLastURLAtAColdStartWaitsForTheFirstScan) {
  const auto file = writeJob(Kind::userAgent, "job");
  open({JobAddress{.path = "/other.plist"}.url()});
  open({JobAddress{.path = file.string()}.url()});
  program().appDelegate.applicationDidFinishLaunching();
  queue.runFor(7);
  EXPECT_EQ(shell.count("select job.plist"), 0U);
  settle();
  EXPECT_EQ(shell.count("select job.plist"), 1U);
  EXPECT_EQ(shell.count("select other.plist"), 0U);
  ASSERT_TRUE(program().selection.job());
  EXPECT_EQ(program().selection.job()->name, "job");
  scan();
  EXPECT_EQ(shell.count("select job.plist"), 1U);
}

}  // namespace
}  // namespace mirvel
