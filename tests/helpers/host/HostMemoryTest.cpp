// What a host remembers from one start to the next, and which files it refuses.

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

TEST_F(HostMemory, LoadsAJobWhoseFileWasMissingAsSoonAsItIsThere) {
  Signpost ran(folder.path() / "ran");
  const std::string script = "echo ran > " + ran.quoted();
  const auto file = job("absent", script);
  load(file);
  fs::rename(folder.path() / "jobs", folder.path() / "unmounted");
  restart();
  restart();  // it is still noted
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

TEST_F(HostMemory, KeepsADamagedListBesideTheNewOne) {
  const auto list = places.folder / "loaded.plist";
  for (const char* damage : {"first damage", "second damage"}) {
    load(job(damage, "true"));
    ASSERT_TRUE(embedded.quit());
    folder.write(fs::relative(list, folder.path()), damage);
    startNext();
    EXPECT_THAT(labels(), IsEmpty());
  }
  EXPECT_EQ(testdata::bytes(list.string() + ".damaged-1"), "first damage");
  EXPECT_EQ(testdata::bytes(list.string() + ".damaged-2"), "second damage");
  load(job("third", "true"));
  restart();
  EXPECT_THAT(labels(), ElementsAre("third"));
}

TEST_F(HostMemory, UnloadsNothingThatWouldBeLoadedAgainAtTheNextStart) {
  const auto list = places.folder / "loaded.plist";
  const auto file = job("noted", "true");
  load(file);
  fs::remove(list);
  fs::create_directory(list);  // as good as a full disk: nothing can be written there
  EXPECT_FALSE(embedded.unload(file, "noted"));
  EXPECT_THAT(labels(), ElementsAre("noted"));
  EXPECT_FALSE(embedded.load(job("more", "true")));
  EXPECT_THAT(labels(), ElementsAre("noted"));
  fs::remove(list);
  EXPECT_TRUE(embedded.unload(file, "noted"));
  restart();
  EXPECT_THAT(labels(), IsEmpty());
}

TEST_F(HostMemory, StartsNothingThatWasSwitchedOffMeanwhile) {
  const auto file = job("off", "touch " + (folder.path() / "ran").string(), {{"StartInterval", 100'000}});
  const auto late = job("late", "touch " + (folder.path() / "ran").string());
  load(file);
  load(late);
  ASSERT_TRUE(embedded.quit());
  const auto switchOff = [&](const std::string& label) {
    return job(label, "touch " + (folder.path() / "ran").string(), {{"RunAtLoad", true}, {"Disabled", true}});
  };
  switchOff("off");
  fs::remove(late);
  startNext();
  switchOff("late");
  load(job("last", "true"));
  EXPECT_THAT(labels(), ElementsAre("last"));
  EXPECT_FALSE(fs::exists(folder.path() / "ran"));
}

TEST_F(HostMemory, ForgetsAJobThatWasOnlyTried) {
  load(job("kept", "true"));
  ASSERT_TRUE(embedded.loadTemporarily(job("tried", "true")));
  EXPECT_THAT(labels(), ElementsAre("kept", "tried"));
  restart();
  EXPECT_THAT(labels(), ElementsAre("kept"));
}

TEST_F(HostMemory, EndsWhatIsTriedByAProcessThatIsKilled) {
#ifndef __linux__
  GTEST_SKIP() << "only Linux tells of the end of any process";
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

TEST_F(HostMemory, LoadsNothingThatOthersCouldHaveWritten) {
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

TEST_F(HostMemory, NamesTheFileFromWhichALabelIsLoadedAlready) {
  const auto first = job("same", "true");
  load(first);
  const auto second = embedded.load(folder.write("jobs/other.plist", testdata::bytes(first)));
  ASSERT_FALSE(second);
  EXPECT_EQ(second.error().code, Error::Code::BadArgument);
  EXPECT_THAT(second.error().text(), testing::HasSubstr(first.string()));

  const auto copy = folder.path() / "jobs" / "other.plist";
  EXPECT_TRUE(embedded.unload(copy, "same"));
  EXPECT_THAT(labels(), ElementsAre("same")) << "it isn't the copy that is loaded";
  fs::rename(first, copy);
  EXPECT_TRUE(embedded.unload(copy, "same")) << "now it is";
  EXPECT_THAT(labels(), IsEmpty());
}

}  // namespace
}  // namespace mirvel::host
