#include "helpers/jobhost/EmbeddedHost.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "helpers/host/HostFixture.h"
#include "helpers/jobhost/HostAutostart.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using EmbeddedHostTest = HostFixture;

TEST_F(EmbeddedHostTest, ALabelIsLoadedFromOneFileWhichMayMove) {
  const fs::path original = job("a", "exit 0");
  const fs::path copy = original.parent_path() / "copy.plist", moved = original.parent_path() / "moved.plist";
  load(original);
  fs::copy_file(original, copy);
  const auto second = embedded.load(copy);
  ASSERT_FALSE(second);
  EXPECT_EQ(second.error().code, Error::Code::BadArgument);
  EXPECT_THAT(second.error().text(), HasSubstr(original.string()));
  EXPECT_TRUE(embedded.unload(copy, "a"));
  EXPECT_THAT(labels(), ElementsAre("a")) << "it was loaded from the original";
  fs::remove(copy);
  fs::create_symlink(original, copy);
  EXPECT_TRUE(embedded.unload(copy, "a"));
  EXPECT_THAT(labels(), IsEmpty()) << "a link leads to the same file";
  load(original);
  fs::rename(original, moved);
  EXPECT_TRUE(embedded.unload(moved, "a"));
  EXPECT_THAT(labels(), IsEmpty()) << "the file has moved";
}

TEST_F(EmbeddedHostTest, ReachesAHostWhosePathIsTooLongForASocketAddress) {
  fs::path deep = folder.path();
  for (int i = 0; i < 3; ++i) deep /= std::string(60, 'x');
  fs::create_directories(deep);
  EmbeddedHost far(EmbeddedHost::below(MIRVEL_HOST, deep), runner);
  const auto loaded = far.load(job("far", "true"));
  EXPECT_TRUE(loaded) << loaded.error().text();
  EXPECT_EQ(HostClient(HostPlaces::of(Roots::below(deep)).socket).status()->size(), 1U);
  EXPECT_TRUE(far.quit());
}

TEST_F(EmbeddedHostTest, FindsTheSameHostFromDifferentEnvironments) {
#ifdef __APPLE__
  GTEST_SKIP() << "the home folder doesn't depend on the environment here";
#endif
  if (::geteuid() == 0) GTEST_SKIP() << "root's host publishes reports in a folder of the machine";
  const Roots roots = Roots::ofLinux(folder.path(), {});
  const auto settings = EmbeddedHost::ofUser(MIRVEL_HOST, roots);
  const auto withRuntime = [&](const std::string& name) {
    fs::create_directory(folder.path() / name);
    return SystemProcessRunner(
        {{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}, {"XDG_RUNTIME_DIR", (folder.path() / name).string()}});
  };
  auto desktop = withRuntime("desktop"), terminal = withRuntime("terminal");
  EmbeddedHost first(settings, desktop), second(settings, terminal);
  ASSERT_TRUE(first.load(job("one", "true")));
  EXPECT_FALSE(second.load(folder.path() / "jobs" / "one.plist")) << "it is loaded already";
  ASSERT_TRUE(second.load(job("two", "true")));
  EXPECT_EQ(HostClient(HostPlaces::of(roots).socket).status()->size(), 2U);
  EXPECT_TRUE(second.quit());
}

TEST_F(EmbeddedHostTest, DoesNotStartAHostForNothingOrAnEmptyLabel) {
  EXPECT_TRUE(embedded.unload("/nothing", "nothing"));
  EXPECT_FALSE(embedded.unload("/a.plist", ""));
  EXPECT_FALSE(embedded.waitForEnd("", seconds(0)));
  const auto asked = client.status();
  ASSERT_FALSE(asked);
  EXPECT_TRUE(HostClient::isNoHost(asked.error()));
}

TEST_F(EmbeddedHostTest, ManyClientsStartOneHost) {
  std::vector<fs::path> files;
  for (int i = 0; i < 6; ++i) files.push_back(job("job" + std::to_string(i), "true"));
  std::vector<std::thread> threads;
  for (const auto& file : files) {
    threads.emplace_back([&, file] {
      EmbeddedHost other(EmbeddedHost::below(MIRVEL_HOST, folder.path()), runner);
      const auto loaded = other.load(file);
      EXPECT_TRUE(loaded) << loaded.error().text();
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(status().size(), files.size());
}

TEST_F(EmbeddedHostTest, UpdatesItsAutostartEntryWhenTheProgramHasMoved) {
  const struct {
    const char* before;
    const char* after;  ///< null: unchanged
  } rows[] = {
      {"[Desktop Entry]\nExec=\"/old/mirvel-host\" --detach\n",
       "[Desktop Entry]\nExec=\"/new/mirvel-host\" --login --detach\n"},
      {"Exec=\"/old/mirvel-host\" --login --detach\nHidden=true\n",
       "Exec=\"/new/mirvel-host\" --login --detach\nHidden=true\n"},
      {"Hidden=true\nExec=\"/old/mirvel-host\" --detach --root \"/a b\"",
       "Hidden=true\nExec=\"/new/mirvel-host\" --login --detach"},
      // Changes of the user.
      {"Exec=nice \"/old/mirvel-host\" --detach\n", nullptr},
      {"Exec=\"/old/mirvel-host\" --detach --verbose\n", nullptr},
      {"Exec=\"/old/other\" --detach\n", nullptr},
      {"TryExec=\"/old/mirvel-host\" --detach\n", nullptr},
      {"Hidden=true\n", nullptr},
      {"", nullptr},
  };
  for (const auto& row : rows) {
    const auto entry = folder.write(HostAutostart::fileName, row.before);
    ASSERT_TRUE(HostAutostart(folder.path(), {"/new/mirvel-host", "--login", "--detach"}).install());
    EXPECT_EQ(testdata::bytes(entry), row.after ? row.after : row.before);
  }
}

TEST_F(EmbeddedHostTest, LoadsAJobWhoseFileWasMissingAsSoonAsItAppears) {
  Signpost ran(folder.path() / "ran");
  const std::string script = "echo ran > " + ran.quoted();
  const auto file = job("absent", script);
  load(file);
  fs::rename(folder.path() / "jobs", folder.path() / "unmounted");
  restart();
  EXPECT_THAT(messagesOf("mirvel-host"), ElementsAre(HasSubstr("absent.plist"))) << "says why it wasn't loaded";
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

TEST_F(EmbeddedHostTest, ADamagedListIsNoObstacle) {
  load(job("first", "true"));
  ASSERT_TRUE(embedded.quit());
  folder.write(fs::relative(places.loadedJobs(), folder.path()), "damage");
  startNext();
  EXPECT_THAT(labels(), IsEmpty());
  load(job("second", "true"));
  restart();
  EXPECT_THAT(labels(), ElementsAre("second"));
}

TEST_F(EmbeddedHostTest, RefusesToUnloadWhatTheNextHostWouldLoadAgain) {
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

TEST_F(EmbeddedHostTest, StartsNothingThatWasDisabledMeanwhile) {
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

TEST_F(EmbeddedHostTest, UnloadsATestRunWhenItsProcessIsKilled) {
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
