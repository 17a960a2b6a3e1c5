#include "helpers/jobhost/EmbeddedHost.h"

#include <gmock/gmock.h>

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

TEST_F(EmbeddedHostTest, AnEmptyLabelIsRefused) {
  EXPECT_FALSE(embedded.unload("/a.plist", ""));
  EXPECT_FALSE(embedded.waitForEnd("", seconds(0)));
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

TEST_F(EmbeddedHostTest, DoesNotStartAHostToUnloadNothing) {
  EXPECT_TRUE(embedded.unload("/nothing", "nothing"));
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

TEST_F(EmbeddedHostTest, KeepsAnAutostartEntryThatTheUserHasChanged) {
  load(job("one", "true"));
  const auto entry = Roots::below(folder.path()).ownAutostart / HostAutostart::fileName;
  EXPECT_THAT(testdata::bytes(entry),
              HasSubstr("Exec=\"" MIRVEL_HOST "\" --login --detach --root \"" + folder.path().string() + "\"\n"));
  folder.write(fs::relative(entry, folder.path()), "Hidden=true\n");
  load(job("two", "true"));
  EXPECT_EQ(testdata::bytes(entry), "Hidden=true\n");
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

}  // namespace
}  // namespace mirvel::host
