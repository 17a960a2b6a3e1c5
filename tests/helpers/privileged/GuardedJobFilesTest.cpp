#include "helpers/privileged/GuardedJobFiles.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "helpers/FakeJobHost.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/soak/Steps.h"
#include "support/RecordingConsole.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testdata::bytes;
using testdata::deleteRequest;
using testdata::jobText;
using testdata::writeRequest;
using testing::IsEmpty;

constexpr const char* uuid = "0A1B2C3D-0000-4000-8000-00000000000F";

/// The folders of a machine below a temporary folder, with a handler that acts for an untrusted user.
class GuardTest : public testing::Test {
 protected:
  static constexpr uid_t nobody = 65534;

  testdata::TemporaryFolder root;
  fs::path folder = root.path() / "LaunchDaemons";
  fs::path outside = root.path() / "outside";
  testdata::FakeJobHost host;
  testdata::RecordingConsole console;
  GuardedJobFiles files{JobFolders({folder, root.path() / "missing"}), console};
  RequestHandler handler = handlerFor(files);

  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can give files to root";
    fs::create_directory(folder);
    fs::create_directory(outside);
    root.write("outside/secret.plist", jobText("secret"));
    root.write("LaunchDaemons/mine.plist", jobText("mine"));
  }

  RequestHandler handlerFor(GuardedJobFiles& guarded) {
    return RequestHandler({.files = guarded, .host = host, .uninstall = {}, .trustsLabels = false});
  }
  Dictionary write(const fs::path& path, const std::string& content = jobText("a")) {
    return handler.handle(writeRequest(1, path, content));
  }
  Dictionary remove(const fs::path& path) { return handler.handle(deleteRequest(path)); }
  /// All files below the root, with their contents, and links with their targets.
  std::map<std::string, std::string> everything() const {
    std::map<std::string, std::string> result;
    for (const auto& entry : fs::recursive_directory_iterator(root.path())) {
      std::string& what = result[entry.path()];
      if (entry.is_symlink()) {
        what = "-> " + fs::read_symlink(entry.path()).string();
      } else if (entry.is_regular_file()) {
        what = bytes(entry.path());
      }
    }
    return result;
  }
};

TEST_F(GuardTest, JobFilesAreWrittenAsRootsWhateverTheyWere) {
  const fs::path old = folder / "mine.plist";
  ASSERT_EQ(::chown(old.c_str(), 1234, 4321), 0);
  ASSERT_EQ(::chmod(old.c_str(), 0666), 0);
  for (const fs::path& path : {old, folder / "new.plist", folder / "no list.txt", folder / "Makefile",
                               folder / "job" / (std::string(uuid) + ".plist")}) {
    EXPECT_EQ(write(path), Dictionary()) << path;
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0) << path;
    EXPECT_EQ(status.st_mode & 07777U, 0644U) << path;
    EXPECT_EQ(status.st_uid, 0U) << path;
    EXPECT_EQ(status.st_gid, 0U) << path;
    EXPECT_EQ(remove(path), Dictionary()) << path;
  }
  EXPECT_TRUE(fs::is_empty(folder));
  EXPECT_THAT(console.logged, IsEmpty());
}

TEST_F(GuardTest, TheTargetOfALinkIsWrittenAndTheLinkRemoved) {
  const fs::path target = outside / "target";
  root.write("outside/target", jobText("linked"));
  EXPECT_NE(write(target), Dictionary());
  fs::create_symlink("../outside/target", folder / "link.plist");
  EXPECT_EQ(write(target, jobText("changed")), Dictionary());
  EXPECT_EQ(bytes(target), jobText("changed"));
  EXPECT_EQ(remove(folder / "link.plist"), Dictionary());
  EXPECT_EQ(host.calls.back(), "unload changed");
  EXPECT_FALSE(fs::is_symlink(folder / "link.plist"));
  EXPECT_EQ(bytes(target), jobText("changed"));
}

TEST_F(GuardTest, EverythingElseIsRefusedAndChangesNothing) {
  fs::create_symlink(outside / "secret.plist", folder / "link.plist");
  fs::create_symlink("/nowhere/at/all", folder / "dangling.plist");
  fs::create_symlink(outside, folder / "linkedFolder");
  fs::create_symlink(folder, root.path() / "other way");
  fs::create_hard_link(outside / "secret.plist", folder / "hard.plist");
  ASSERT_EQ(::mkfifo((folder / "pipe.plist").c_str(), 0600), 0);
  fs::create_directory(folder / "folder.plist");
  fs::create_directory(folder / "anybodys");
  ASSERT_EQ(::chmod((folder / "anybodys").c_str(), 0777), 0);
  fs::create_directory(folder / "theirs");
  ASSERT_EQ(::chown((folder / "theirs").c_str(), 1234, 1234), 0);

  const std::string name = std::string(uuid) + ".plist";
  const std::vector<fs::path> paths{
      outside / "secret.plist",
      outside / "new.plist",
      "/etc/passwd",
      "/",
      folder,
      folder / "",
      folder / "..",
      folder / ".." / "outside" / "new.plist",
      folder / "." / "new.plist",
      fs::path(folder.string() + "//new.plist"),
      folder / "x" / ".." / "new.plist",
      folder / "job" / "new.plist",
      folder / "job" / "deeper" / name,
      folder / name / "",
      root.path() / "other way" / "new.plist",
      folder / "linkedFolder" / name,
      folder / "link.plist",
      folder / "dangling.plist",
      folder / "hard.plist",
      folder / "pipe.plist",
      folder / "folder.plist",
      folder / "anybodys" / name,
      folder / "theirs" / name,
      folder / "mine.plist" / name,
      root.path() / "missing" / "new.plist",
      fs::path(folder.string() + "x") / "new.plist",
  };
  const auto before = everything();
  for (const auto& path : paths) {
    EXPECT_NE(write(path), Dictionary()) << path;
    EXPECT_EQ(everything(), before) << path;
    if (path != folder / "link.plist" && path != folder / "dangling.plist" &&
        path.parent_path() != root.path() / "missing") {
      EXPECT_NE(remove(path), Dictionary()) << path;
      EXPECT_NE(handler.handle(writeRequest(0, folder / "mine.plist", jobText("changed"), path)), Dictionary()) << path;
    }
    EXPECT_NE(handler.handle({{"kind", 5}, {"path", path.string()}}), Dictionary()) << path;
    EXPECT_EQ(everything(), before) << path;
  }
  EXPECT_THAT(host.calls, IsEmpty());
  EXPECT_GE(console.logged.size(), paths.size());
}

/// Of a request, such a path is refused before it gets here; see `FieldReader`.
TEST_F(GuardTest, APathIsNotCutOffAtANullCharacter) {
  const std::string up("..\0x", 4);
  GuardedJobFiles removing(JobFolders({folder}), console, {}, RemovableItems{.itemFolders = {folder}});
  const auto before = everything();
  EXPECT_FALSE(files.write(folder / up / (std::string(uuid) + ".plist"), jobText("a"), 0777));
  EXPECT_FALSE(removing.remove(folder / up));
  EXPECT_EQ(everything(), before);
}

TEST_F(GuardTest, AMoveOutOfTheUsersFolderHasTheUsersRightsAndNoMore) {
  const fs::path agents = root.path() / "agents";
  ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
  GuardedJobFiles usersToo(JobFolders({folder}), console, GuardedJobFiles::User{nobody, JobFolders({agents})});
  RequestHandler mover = handlerFor(usersToo);
  const auto move = [&](const fs::path& from) {
    return mover.handle(writeRequest(1, folder / "moved.plist", jobText("moved"), from));
  };
  const fs::path mine = root.write("agents/mine.plist", jobText("moved"));
  EXPECT_NE(move(mine), Dictionary());  // the folder is root's, so the user can't remove the file
  EXPECT_TRUE(fs::exists(mine));
  EXPECT_FALSE(fs::exists(folder / "moved.plist"));
  ASSERT_EQ(::chown(agents.c_str(), nobody, nobody), 0);
  EXPECT_EQ(move(mine), Dictionary());
  EXPECT_FALSE(fs::exists(mine));
  EXPECT_EQ(bytes(folder / "moved.plist"), jobText("moved"));
  EXPECT_EQ(::geteuid(), 0U);

  fs::remove(agents);
  fs::create_symlink(folder, agents);  // a link to a folder in which the user can't remove anything
  EXPECT_NE(mover.handle(deleteRequest(agents / "mine.plist")), Dictionary());
  EXPECT_TRUE(fs::exists(folder / "mine.plist"));
  EXPECT_NE(mover.handle(writeRequest(0, agents / "a.plist", jobText("a"))), Dictionary());
  EXPECT_FALSE(fs::exists(folder / "a.plist"));
}

TEST_F(GuardTest, APrivateJobMovesOnlyWhereItsUserStillSeesIt) {
  const fs::path agents = root.path() / "agents", mine = agents / "mine.plist", moved = folder / "moved.plist";
  ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
  fs::create_directory(agents);
  ASSERT_EQ(::chown(agents.c_str(), nobody, nobody), 0);
  const struct {
    uid_t user;
    std::optional<gid_t> group;
    std::optional<int> mode;
    bool isMoved;
  } rows[] = {{nobody, {}, 0600, false},    {nobody, {}, 0640, false}, {nobody, {}, 0604, true},
              {nobody, nobody, 0600, true}, {nobody, {}, {}, true},    {0, {}, 0600, true}};
  for (const auto& row : rows) {
    fs::remove(moved);
    root.write("agents/mine.plist", jobText("moved"));
    GuardedJobFiles guarded(JobFolders({folder}), console,
                            GuardedJobFiles::User{row.user, JobFolders({agents}), row.group});
    Dictionary request = writeRequest(0, moved, jobText("moved"), mine);
    if (row.mode) request.set("mode", *row.mode);
    EXPECT_EQ(handlerFor(guarded).handle(request) == Dictionary(), row.isMoved) << &row - rows;
    EXPECT_EQ(fs::exists(moved), row.isMoved) << &row - rows;
    EXPECT_NE(fs::exists(mine), row.isMoved) << &row - rows;
  }
}

TEST_F(GuardTest, AMoveKilledAtAnyStepLeavesTheJobExactlyOnce) {
  const fs::path other = root.path() / "LaunchAgents";
  fs::create_directory(other);
  const fs::path here = folder / "mine.plist", there = other / "mine.plist";
  GuardedJobFiles both(JobFolders({folder, other}), console);
  long kills = 0;
  for (bool isKilled = true; isKilled; kills += isKilled ? 1 : 0) {
    const bool isHere = fs::exists(here);
    steps::Victim victim(kills + 1,
                         [&] { (void)both.move(isHere ? here : there, isHere ? there : here, jobText("a"), 0777); });
    isKilled = victim.outcome().isKilled;
    ASSERT_NE(fs::exists(here), fs::exists(there)) << kills;
  }
  EXPECT_GE(kills, 5) << "rename, write, mode, flush, rename and more";
}

TEST_F(GuardTest, StartupItemsAndHelperToolsAreRemovedAndNothingElse) {
  root.write("StartupItems/Item/Item", "#!/bin/sh\n");
  root.write("StartupItems/Item/Resources/de.lproj/texts", "");
  root.write("StartupItems/Other/Other", "");
  root.write("Tools/tool", "");
  root.write("Tools/folder/file", "");
  fs::create_symlink(outside, root.path() / "StartupItems/Item/way out");
  fs::create_symlink(outside, root.path() / "StartupItems/Linked");
  GuardedJobFiles removing(
      JobFolders({folder}), console, {},
      RemovableItems{.itemFolders = {root.path() / "StartupItems"}, .toolFolders = {root.path() / "Tools"}});
  RequestHandler remover = handlerFor(removing);
  struct Row {
    fs::path path;
    bool isRemoved;
  };
  const std::vector<Row> rows{
      {root.path() / "StartupItems/Item", true},    {root.path() / "StartupItems/Linked", true},
      {root.path() / "StartupItems/Missing", true}, {root.path() / "Tools/tool", true},
      {root.path() / "Tools/folder", false},        {root.path() / "StartupItems/Other/Other", false},
      {root.path() / "StartupItems", false},        {root.path() / "StartupItems/..", false},
      {root.path() / "Tools/folder/file", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(remover.handle(deleteRequest(row.path)) == Dictionary(), row.isRemoved) << row.path;
    EXPECT_EQ(fs::exists(fs::symlink_status(row.path)), !row.isRemoved) << row.path;
  }
  EXPECT_TRUE(fs::exists(outside / "secret.plist"));
  EXPECT_NE(remover.handle(writeRequest(0, root.path() / "Tools/new", jobText("a"))), Dictionary());
  EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(GuardTest, ALabelStopsNoJobButThatOfTheFile) {
  const std::string mine = folder / "mine.plist";
  const std::string renamed = folder / "new.plist";
  EXPECT_EQ(handler.handle({{"kind", 1}, {"path", renamed}, {"string", jobText("other")}, {"label", "one more"}}),
            Dictionary());
  EXPECT_THAT(host.calls, testing::ElementsAre("unload new.plist", "load new.plist"));
  host.calls.clear();
  handler.handle({{"kind", 4}, {"path", mine}, {"label", "other"}});
  handler.handle({{"kind", 2}, {"deletePath", mine}, {"label", "other"}});
  EXPECT_THAT(host.calls, testing::Each("unload mine"));
}

TEST_F(GuardTest, JobsWhoseFileHasGoneAreStoppedOrReported) {
  const std::string gone = folder / "gone.plist", damaged = folder / "damaged.plist";
  root.write("LaunchDaemons/damaged.plist", "no list");
  const struct {
    Dictionary request;
    const char* file;
  } rows[] = {
      {{{"kind", 4}, {"path", gone}}, "gone.plist"},
      {{{"kind", 4}, {"path", gone}, {"label", "any"}}, "gone.plist"},
      {{{"kind", 2}, {"deletePath", gone}, {"label", "any"}}, "gone.plist"},
      {writeRequest(0, gone, jobText("a")), "gone.plist"},
      {writeRequest(0, gone, jobText("a"), damaged), "damaged.plist"},
      {deleteRequest(damaged), "damaged.plist"},
  };
  for (const auto& row : rows) {
    root.write("LaunchDaemons/damaged.plist", "no list");
    fs::remove(gone);
    const std::string call = std::string("unload ") + row.file;
    host.calls.clear();
    host.failing = {call};
    EXPECT_NE(handler.handle(row.request), Dictionary()) << call;
    EXPECT_THAT(host.calls, testing::Contains(call));
    root.write("LaunchDaemons/damaged.plist", "no list");
    fs::remove(gone);
    host.failing.clear();
    EXPECT_EQ(handler.handle(row.request), Dictionary()) << call;
  }
}

TEST_F(GuardTest, OnlyDaemonsAreLoadedAsRoot) {
  const fs::path agents = root.path() / "LaunchAgents";
  root.write("LaunchAgents/agent.plist", jobText("agent"));
  fs::create_symlink(root.write("outside/agent", jobText("a")), agents / "link.plist");
  fs::create_symlink(root.write("outside/daemon", jobText("d")), folder / "link.plist");
  GuardedJobFiles both(JobFolders({folder}, {agents}), console);
  RequestHandler loader = handlerFor(both);
  const struct {
    fs::path file;
    bool isLoaded;
  } rows[] = {{folder / "mine.plist", true},
              {outside / "daemon", true},
              {agents / "agent.plist", false},
              {outside / "agent", false},
              {agents / "job" / (std::string(uuid) + ".plist"), false}};
  for (const auto& row : rows) {
    const auto before = everything();
    host.calls.clear();
    const Dictionary load{{"kind", 5}, {"path", row.file.string()}};
    const Dictionary onlyWrite = writeRequest(0, row.file, jobText("new"));
    EXPECT_EQ(loader.handle(load) == Dictionary(), row.isLoaded) << row.file;
    EXPECT_EQ(loader.handle(writeRequest(1, row.file, jobText("new"))) == Dictionary(), row.isLoaded) << row.file;
    EXPECT_EQ(everything() == before, !row.isLoaded) << row.file;
    EXPECT_EQ(host.calls.empty(), !row.isLoaded) << row.file;
    EXPECT_EQ(loader.handle(onlyWrite), Dictionary()) << row.file;
    fs::remove(row.file);
    host.calls.clear();
    loader.handle(onlyWrite);
    EXPECT_TRUE(row.isLoaded || host.calls.empty()) << "root's host has nothing to do with a new agent: " << row.file;
  }
}

TEST_F(GuardTest, NoFileBecomesMoreOpen) {
  const fs::path other = root.path() / "LaunchAgents", agents = root.path() / "agents";
  fs::create_directory(other);
  GuardedJobFiles both(JobFolders({folder, other}), console, GuardedJobFiles::User{12345, JobFolders({agents}), 7777});
  RequestHandler mover = handlerFor(both);
  const struct {
    uid_t user;
    mode_t before;
    std::optional<int> asked;
    mode_t after;
    gid_t group;
  } rows[] = {
      {0, 0600, {}, 0600, 4321},  {0, 0640, {}, 0640, 4321},  {0, 0444, {}, 0644, 0},      {0, 0664, {}, 0644, 0},
      {12345, 0600, {}, 0600, 0}, {12345, 0640, {}, 0640, 0}, {0, 0644, 0600, 0640, 7777}, {0, 0, 0600, 0640, 7777},
      {0, 0, 0640, 0640, 7777},   {0, 0, 0777, 0644, 0},      {0, 0, 0000, 0640, 7777},    {0, 0, {}, 0644, 0},
  };
  for (const auto& row : rows) {
    const fs::path file = folder / "mode.plist", moved = other / "mode.plist";
    fs::remove(file), fs::remove(moved);
    if (row.before != 0) {
      root.write("LaunchDaemons/mode.plist", jobText("a"));
      ASSERT_EQ(::chown(file.c_str(), row.user, 4321), 0);
      ASSERT_EQ(::chmod(file.c_str(), row.before), 0);
    }
    const auto expectAt = [&](const fs::path& path) {
      struct stat status {};
      ASSERT_EQ(::stat(path.c_str(), &status), 0);
      EXPECT_EQ(status.st_mode & 07777U, row.after) << &row - rows;
      EXPECT_EQ(status.st_gid, row.group) << &row - rows;
      EXPECT_EQ(status.st_uid, 0U) << &row - rows;
    };
    Dictionary request = writeRequest(0, file, jobText("a"));
    if (row.asked) request.set("mode", *row.asked);
    EXPECT_EQ(mover.handle(request), Dictionary());
    expectAt(file);
    EXPECT_EQ(mover.handle(writeRequest(0, moved, jobText("b"), file)), Dictionary());
    expectAt(moved);
  }
}

/// Exchanges two names atomically, so that both always exist.
bool exchange(const fs::path& a, const fs::path& b) {
#ifdef RENAME_EXCHANGE
  return ::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
#else
  return ::renamex_np(a.c_str(), b.c_str(), RENAME_SWAP) == 0;
#endif
}

/// Exchanges two names all the time.
class Attacker {
 public:
  Attacker(const fs::path& a, const fs::path& b)
      : m_thread([this, a, b] {
          while (!m_isDone) m_exchanges += exchange(a, b) ? 1 : 0;
        }) {}
  Attacker(const Attacker&) = delete;
  Attacker& operator=(const Attacker&) = delete;
  ~Attacker() {
    m_isDone = true;
    m_thread.join();
  }

  int exchanges() const { return m_exchanges; }

 private:
  std::atomic<bool> m_isDone = false;
  std::atomic<int> m_exchanges = 0;
  std::thread m_thread;
};

TEST_F(GuardTest, AFolderExchangedForALinkMeanwhileLeadsNowhere) {
  const std::string name = std::string(uuid) + ".plist";
  fs::create_directory(folder / "job");
  fs::create_symlink(outside, folder / "trap");
  root.write("outside/" + name, jobText("secret"));
  Attacker attacker(folder / "job", folder / "trap");
  const int tries = steps::tries(300, 10000);
  int written = 0;
  for (int i = 0; i < tries; ++i) {
    written += write(folder / "job" / name, jobText("harm" + std::to_string(i))) == Dictionary() ? 1 : 0;
    remove(folder / "job" / name);
    ASSERT_EQ(bytes(outside / name), jobText("secret"));
  }
  EXPECT_GT(attacker.exchanges(), 0);
  EXPECT_GT(tries, written);  // the link was met at least once
  EXPECT_THAT(host.calls, testing::Not(testing::Contains("unload secret")));
}

}  // namespace
}  // namespace mirvel
