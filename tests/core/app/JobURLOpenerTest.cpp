#include "core/app/JobURLOpener.h"

#include <gmock/gmock.h>

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
