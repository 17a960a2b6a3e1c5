#include "core/actions/DeletedJobs.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class DeletedJobsTest : public testing::Test {
 protected:
  DeletedJobs store() { return {folder.path() / "support", clock, troubles}; }
  Job job(const std::string& name, const std::string& content) const {
    return {Kind::localDaemon, name, "", "sum", URL::file(folder.write(name + ".plist", content))};
  }
  /// Keeps a job and removes its file.
  std::string lose(DeletedJobs& deleted, const std::string& name, const std::string& content) {
    const Job gone = job(name, content);
    const auto id = deleted.keep(gone);
    fs::remove(gone.url.path());
    clock.now += 1;
    return id ? *id : "(" + id.error().text() + ")";
  }
  std::vector<std::string> names() {
    std::vector<std::string> result;
    for (const auto& deleted : store().jobs()) result.push_back(deleted.name);
    return result;
  }

  const testdata::TemporaryFolder folder;
  testdata::FakeClock clock;
  StoreTroubles troubles;
};

TEST_F(DeletedJobsTest, AFileIsKeptByteForByteWithItsPath) {
  const std::string bytes("bplist00\0\xff<!-- mine -->\r\n", 25);
  auto deleted = store();
  const double then = clock.now;
  const auto id = lose(deleted, "a", bytes);
  const auto jobs = store().jobs();
  ASSERT_THAT(jobs, SizeIs(1));
  EXPECT_EQ(jobs[0].id, id);
  EXPECT_EQ(jobs[0].name, "a");
  EXPECT_EQ(jobs[0].kind, Kind::localDaemon);
  EXPECT_EQ(jobs[0].url.path(), folder.path() / "a.plist");
  EXPECT_EQ(jobs[0].bytes, bytes);
  EXPECT_EQ(jobs[0].deletedAt, then);
  deleted.forget(id);
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(DeletedJobsTest, TheLastDeletedComesFirstAndEachStaysForThirtyDays) {
  auto deleted = store();
  const double start = clock.now;
  lose(deleted, "first", "1");
  clock.now = start + 29 * 86400;
  lose(deleted, "second", "2");
  EXPECT_THAT(names(), ElementsAre("second", "first"));
  clock.now = start + 30 * 86400 + 1;
  EXPECT_THAT(names(), ElementsAre("second"));
  lose(deleted, "third", "3");
  clock.now = start;
  EXPECT_THAT(names(), ElementsAre("third", "second")) << "the first has gone for good";
}

TEST_F(DeletedJobsTest, BeyondTheLimitsTheOldestAreRemovedButNeverTheNewest) {
  DeletedJobs deleted(folder.path() / "support", clock, troubles, {.jobs = 3, .bytes = 10});
  for (const char* name : {"a", "b", "c", "d"}) lose(deleted, name, "1");
  EXPECT_THAT(names(), ElementsAre("d", "c", "b"));
  lose(deleted, "e", "12345678");
  EXPECT_THAT(names(), ElementsAre("e", "d", "c"));
  lose(deleted, "f", "123");
  EXPECT_THAT(names(), ElementsAre("f"));
  lose(deleted, "g", "more than all of the room");
  EXPECT_THAT(names(), ElementsAre("g"));
}

TEST_F(DeletedJobsTest, AnUnchangedFileIsntListed) {
  auto deleted = store();
  const Job present = job("a", "1");
  ASSERT_TRUE(deleted.keep(present));
  EXPECT_THAT(names(), IsEmpty());
  (void)folder.write("a.plist", "another job by now");
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(DeletedJobsTest, AFileThatCantBeReadOrWrittenIsAnError) {
  auto deleted = store();
  EXPECT_FALSE(deleted.keep({Kind::userAgent, "gone", "", "sum", URL::file(folder.path() / "gone.plist")}));
  (void)folder.write("support", "a file where the folder should be");
  EXPECT_FALSE(deleted.keep(job("a", "1")));
}

TEST_F(DeletedJobsTest, EntriesOfOtherVersionsAreIgnoredAndKept) {
  (void)folder.write("support/DeletedJobs.plist",
                     "<plist><dict><key>later</key><dict><key>Form</key><integer>2</integer></dict>"
                     "<key>odd</key><true/></dict></plist>");
  auto deleted = store();
  lose(deleted, "a", "1");
  EXPECT_THAT(names(), ElementsAre("a"));
  Store raw(folder.path() / "support" / "DeletedJobs.plist");
  EXPECT_TRUE(raw.find("later"));
  EXPECT_TRUE(raw.find("odd"));
}

}  // namespace
}  // namespace mirvel
