// What a host saves for its next start, and which files it rejects.

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "helpers/host/HostFixture.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

using HostMemory = HostFixture;

TEST_F(HostMemory, LoadsAJobWhoseFileWasMissingAsSoonAsItAppears) {
  Signpost ran(folder.path() / "ran");
  const std::string script = "echo ran > " + ran.quoted();
  const auto file = job("absent", script);
  load(file);
  fs::rename(folder.path() / "jobs", folder.path() / "unmounted");
  restart();
  restart();  // it is still saved
  EXPECT_THAT(labels(), IsEmpty());
  const propertylist::Dictionary keys{{"RunAtLoad", true},
                                      {"ProgramArguments", propertylist::Array{"/bin/sh", "-c", script}}};
  folder.write("unmounted/absent.plist", testdata::jobText("absent", keys));
  fs::rename(folder.path() / "unmounted", folder.path() / "jobs");
  EXPECT_EQ(ran.line(), "ran");
  EXPECT_THAT(labels(), ElementsAre("absent"));

  fs::remove(file);
  restart();
  EXPECT_TRUE(embedded.unload(file, "absent"));
  job("absent", script);
  restart();
  EXPECT_THAT(labels(), IsEmpty()) << "it was unloaded while its file was missing";
}

TEST_F(HostMemory, ADamagedListIsNoObstacle) {
  load(job("first", "true"));
  ASSERT_TRUE(embedded.quit());
  folder.write(fs::relative(places.loadedJobs(), folder.path()), "damage");
  startNext();
  EXPECT_THAT(labels(), IsEmpty());
  load(job("second", "true"));
  restart();
  EXPECT_THAT(labels(), ElementsAre("second"));
}

TEST_F(HostMemory, RefusesToUnloadWhatTheNextHostWouldLoadAgain) {
  const auto list = places.loadedJobs();
  const auto file = job("noted", "true");
  load(file);
  fs::remove(list);
  fs::create_directory(list);  // like a full disk: the list can't be written
  EXPECT_FALSE(embedded.unload(file, "noted"));
  EXPECT_THAT(labels(), ElementsAre("noted"));
  EXPECT_FALSE(embedded.load(job("more", "true")));
  EXPECT_THAT(labels(), ElementsAre("noted"));
  fs::remove(list);
  EXPECT_TRUE(embedded.unload(file, "noted"));
  restart();
  EXPECT_THAT(labels(), IsEmpty());
}

TEST_F(HostMemory, StartsNothingThatWasDisabledMeanwhile) {
  const auto file = job("off", "touch " + (folder.path() / "ran").string(), {{"StartInterval", 100'000}});
  const auto late = job("late", "touch " + (folder.path() / "ran").string());
  load(file);
  load(late);
  ASSERT_TRUE(embedded.quit());
  const auto disable = [&](const std::string& label) {
    return job(label, "touch " + (folder.path() / "ran").string(), {{"RunAtLoad", true}, {"Disabled", true}});
  };
  disable("off");
  fs::remove(late);
  startNext();
  disable("late");
  load(job("last", "true"));
  EXPECT_THAT(labels(), ElementsAre("last"));
  EXPECT_FALSE(fs::exists(folder.path() / "ran"));
}

TEST_F(HostMemory, UnloadsATestRunWhenItsProcessIsKilled) {
#ifndef __linux__
  GTEST_SKIP() << "only Linux reports the end of any process";
#endif
  Signpost pipe(folder.path() / "pipe");
  const auto file = lastingJob("tried", pipe);
  const pid_t helper = ::fork();
  if (helper == 0) {
    (void)embedded.loadTemporarily(file);
    for (;;) ::pause();
  }
  EXPECT_TRUE(isAlive(pipe.words().front()));
  ::kill(helper, SIGKILL);
  ::waitpid(helper, nullptr, 0);
  EXPECT_TRUE(pipe.isDeserted());
}

TEST_F(HostMemory, RejectsFilesThatOthersCouldHaveWritten) {
  const auto file = job("open", "true");
  const struct {
    fs::path changed;
    mode_t mode;
  } rows[] = {{file, 0666}, {file.parent_path(), 0777}};
  for (const auto& row : rows) {
    struct stat before {};
    ASSERT_EQ(::stat(row.changed.c_str(), &before), 0);
    ASSERT_EQ(::chmod(row.changed.c_str(), row.mode), 0);
    const auto refused = embedded.load(file);
    ASSERT_FALSE(refused) << row.changed;
    EXPECT_EQ(refused.error().code, Error::Code::NotTrusted);
    EXPECT_EQ(refused.error().file, row.changed);
    ASSERT_EQ(::chmod(row.changed.c_str(), before.st_mode & 07777), 0);
  }
  load(file);
}

TEST(LoadedJobs, KeepDamagedFilesAndNeverOverwriteUnreadableOnes) {
  const testdata::TemporaryFolder folder;
  LoadedJobs jobs(folder.path() / "loaded.plist");
  EXPECT_THAT(*jobs.read(), ElementsAre());
  ASSERT_TRUE(jobs.write({"/a b", "/ü"}));
  EXPECT_THAT(*jobs.read(), ElementsAre("/a b", "/ü"));
  for (const char* content :
       {"", "garbage", "<plist><array/></plist>", "<plist><dict><key>Loaded</key><true/></dict></plist>",
        "<plist><dict><key>Loaded</key><array><string>/a</string><true/></array></dict></plist>"}) {
    folder.write("loaded.plist", content);
    EXPECT_FALSE(jobs.read()) << content;
    EXPECT_TRUE(jobs.read()) << "it was renamed";
  }
  EXPECT_TRUE(fs::exists(folder.path() / "loaded.plist.damaged-5"));
  fs::create_directory(folder.path() / "loaded.plist");
  EXPECT_FALSE(jobs.read());
  fs::remove(folder.path() / "loaded.plist");
  EXPECT_FALSE(jobs.write({})) << "the list couldn't be read";
}

}  // namespace
}  // namespace mirvel::host
