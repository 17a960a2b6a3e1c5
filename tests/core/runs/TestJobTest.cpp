#include "core/runs/TestJob.h"

#include <gmock/gmock.h>

#include "core/commands/RepairsFixture.h"
#include "core/jobfile/Plist.h"
#include "core/propertylist/Reader.h"
#include "support/JobText.h"

namespace mirvel {
namespace {

using jobfile::Plist;
using propertylist::Array;
using propertylist::Dictionary;

struct TestJobTest : RepairsFixture {
  /// The content of the job file that is tested; empty if there is none.
  Dictionary tested(const Plist& record) {
    const auto job = TestJob::of(record, repairs);
    if (!job) return {};
    auto content = propertylist::readDictionary(job->text);
    EXPECT_TRUE(content);
    EXPECT_EQ(*content->get<std::string>("Label"), job->label);
    return *std::move(content);
  }
};

TEST_F(TestJobTest, ThePublishedJobsLoseTheirTriggersAndNothingElse) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  const std::set<std::string, std::less<>> gone{"Disabled",
                                                "KeepAlive",
                                                "LaunchEvents",
                                                "LaunchOnlyOnce",
                                                "LimitLoadFromHosts",
                                                "LimitLoadFromHardware",
                                                "LimitLoadToHardware",
                                                "LimitLoadToHosts",
                                                "LimitLoadToSessionType",
                                                "MachServices",
                                                "OnDemand",
                                                "QueueDirectories",
                                                "Sockets",
                                                "StandardErrorPath",
                                                "StandardOutPath",
                                                "StartCalendarInterval",
                                                "StartInterval",
                                                "StartOnMount",
                                                "ThrottleInterval",
                                                "WatchPaths",
                                                "inetdCompatibility"};
  int jobs = 0;
  for (const auto& file : testdata::files(corpus, ".plist")) {
    const auto bytes = testdata::bytes(file);
    const auto record = Plist::readTolerantly(bytes);
    auto expected = propertylist::readDictionary(bytes);
    if (!record || !expected || record->run.empty()) continue;
    ++jobs;
    const Plist before = record->clone();
    Dictionary result = tested(*record);
    EXPECT_EQ(*record, before);
    for (const auto& key : gone) (void)expected->remove(key);
    expected->set("RunAtLoad", true);
    expected->set("Label", *result.get<std::string>("Label"));
    EXPECT_EQ(result, *expected) << file;
  }
  EXPECT_GT(jobs, 100);
}

TEST_F(TestJobTest, TheEditedJobIsTestedAsASaveWouldWriteIt) {
  auto record = *Plist::readTolerantly(testdata::jobText(
      "a", {{"Program", "/bin/sh"}, {"ProgramArguments", Array{"sh", "-x"}}, {"Odd", 1}, {"Nice", "much"}}));
  record.run = "perl '~/a b.pl' | wc";  // a save would ask whether this becomes a script
  record.workingDirectory = "/tmp";
  record.disabled = true;
  Dictionary result = tested(record);
  (void)result.remove("Label");
  EXPECT_EQ(result, (Dictionary{{"Nice", "much"},
                                {"Odd", 1},
                                {"ProgramArguments", Array{"/usr/bin/perl", "/Users/x/a b.pl", "|", "wc"}},
                                {"RunAtLoad", true},
                                {"WorkingDirectory", "/tmp"}}));
  EXPECT_EQ(record.run, "perl '~/a b.pl' | wc");
  EXPECT_TRUE(interface.alerts.empty());
  EXPECT_NE(TestJob::of(record, repairs)->label, TestJob::of(record, repairs)->label);
  record.run.clear();
  EXPECT_EQ(TestJob::of(record, repairs), std::nullopt);
}

}  // namespace
}  // namespace mirvel
