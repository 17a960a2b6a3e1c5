#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <memory>
#include <string>

#include "support/TestData.h"
#include "ui/EventLoop.h"
#include "ui/support/PathWalk.h"
#ifdef __linux__
#include "ui/support/PlatformFolderMonitors.h"
#endif

namespace mirvel::ui {

namespace fs = std::filesystem;
using testdata::eventually;

namespace {

struct Kind {
  const char* name;
  std::unique_ptr<FolderMonitors> (*make)();
};

template <typename Monitors>
std::unique_ptr<FolderMonitors> make() {
  return std::make_unique<Monitors>();
}

#ifdef __linux__
std::unique_ptr<FolderMonitors> makeWithoutInotify() {
  return std::make_unique<InotifyFolderMonitors>([] { return Inotify(); });
}
#endif

const Kind kinds[] = {
#ifdef __linux__
    {"Inotify", make<InotifyFolderMonitors>},
    {"NoInotifyToBeHad", makeWithoutInotify},
#endif
    {"Watcher", make<WatcherFolderMonitors>},
};

}  // namespace

class FolderMonitorTest : public testing::TestWithParam<Kind> {
 protected:
  void watch(const fs::path& folder) {
    m_monitor = m_monitors->watch(folder, [this] { ++m_count; });
  }
  /// Whether a change is reported. Earlier changes don't count.
  template <typename Change>
  bool isReported(Change change) {
    testdata::settle();
    m_count = 0;
    change();
    return eventually([this] { return m_count > 0; });
  }
  template <typename Change>
  bool isIgnored(Change change) {
    testdata::settle();
    m_count = 0;
    change();
    testdata::settle();
    return m_count == 0;
  }

  testdata::TemporaryFolder m_temporary;
  fs::path m_root = m_temporary.path();
  std::unique_ptr<FolderMonitors> m_monitors = GetParam().make();
  int m_count = 0;
  std::unique_ptr<FolderMonitor> m_monitor;
};

TEST_P(FolderMonitorTest, ReportsChangesOfFiles) {
  const fs::path folder = m_root / "jobs";
  fs::create_directory(folder);
  watch(folder);

  EXPECT_TRUE(isReported([&] { m_temporary.write("jobs/a.plist", "one"); })) << "added";
  EXPECT_TRUE(isReported([&] { std::ofstream(folder / "a.plist", std::ios::app) << "two"; })) << "changed in place";
  EXPECT_TRUE(isReported([&] { fs::permissions(folder / "a.plist", fs::perms::owner_read); })) << "rights changed";
  EXPECT_TRUE(isReported([&] { fs::rename(folder / "a.plist", folder / "b.plist"); })) << "renamed";
  m_temporary.write("other", "three");
  EXPECT_TRUE(isReported([&] { fs::rename(m_root / "other", folder / "b.plist"); })) << "replaced";
  EXPECT_TRUE(isReported([&] { std::ofstream(folder / "b.plist", std::ios::app) << "four"; }))
      << "changed once replaced";
  EXPECT_TRUE(isReported([&] { fs::rename(folder / "b.plist", m_root / "b.plist"); })) << "moved away";
  EXPECT_TRUE(isReported([&] { fs::rename(m_root / "b.plist", folder / "b.plist"); })) << "moved in";
  EXPECT_TRUE(isReported([&] { fs::remove(folder / "b.plist"); })) << "deleted";
  EXPECT_TRUE(isReported([&] { fs::create_directory(folder / "inner"); })) << "folder added";
}

TEST_P(FolderMonitorTest, SeesTheFolderComeAndGoWithItsParents) {
  const fs::path parent = m_root / "a";
  const fs::path folder = parent / "b/jobs";
  watch(folder);

  for (int round = 0; round < 2; ++round) {
    fs::create_directories(parent / "b");
    EXPECT_TRUE(isReported([&] { fs::create_directory(folder); })) << "the folder comes";
    EXPECT_TRUE(isReported([&] { std::ofstream(folder / "x") << 1; })) << "a file in it";
    EXPECT_TRUE(isReported([&] { fs::remove_all(parent); })) << "all go";
  }
  EXPECT_TRUE(isReported([&] {
    fs::create_directories(folder);
    std::ofstream(folder / "x") << 1;
  })) << "all come at once";
  EXPECT_TRUE(isReported([&] {
    fs::remove_all(folder);
    fs::create_directory(folder);
  })) << "created again";
  EXPECT_TRUE(isReported([&] { std::ofstream(folder / "x") << 1; })) << "a file in the new one";
}

TEST_P(FolderMonitorTest, FollowsThePathAndNotTheFolder) {
  const fs::path parent = m_root / "a";
  const fs::path folder = parent / "jobs";
  fs::create_directories(folder);
  fs::create_directory(m_root / "spare");
  watch(folder);

  EXPECT_TRUE(isReported([&] { fs::rename(folder, m_root / "old"); })) << "renamed";
  EXPECT_TRUE(isIgnored([&] { std::ofstream(m_root / "old/x") << 1; })) << "it is another folder now";
  EXPECT_TRUE(isReported([&] { fs::rename(m_root / "spare", folder); })) << "replaced";
  EXPECT_TRUE(isReported([&] { std::ofstream(folder / "y") << 1; }));
  EXPECT_TRUE(isReported([&] { fs::rename(parent, m_root / "away"); })) << "parent renamed";
  EXPECT_TRUE(isIgnored([&] { std::ofstream(m_root / "away/jobs/z") << 1; }));
  EXPECT_TRUE(isReported([&] { fs::rename(m_root / "away", parent); })) << "and back";
  EXPECT_TRUE(isReported([&] { std::ofstream(folder / "y", std::ios::app) << 2; }));
}

TEST_P(FolderMonitorTest, FollowsALinkedFolderAndItsLink) {
  fs::create_directories(m_root / "real/jobs");
  fs::create_directories(m_root / "second/jobs");
  fs::create_directory_symlink("real", m_root / "link");
  watch(m_root / "link/jobs");

  EXPECT_TRUE(isReported([&] { m_temporary.write("real/jobs/x", "1"); })) << "in the target of the link";
  EXPECT_TRUE(isReported([&] {
    fs::remove(m_root / "link");
    fs::create_directory_symlink(m_root / "second", m_root / "link");
  })) << "link turned";
  EXPECT_TRUE(isReported([&] { m_temporary.write("second/jobs/x", "1"); })) << "in the target of the new link";
  EXPECT_TRUE(isReported([&] { fs::rename(m_root / "second", m_root / "gone"); })) << "the link's target goes";
}

TEST_P(FolderMonitorTest, KeepsQuietAboutNeighbours) {
  const fs::path folder = m_root / "a/jobs";
  fs::create_directories(folder);
  watch(folder);
  EXPECT_TRUE(isIgnored([&] {
    m_temporary.write("a/jobs-of-others", "1");
    m_temporary.write("neighbour", "1");
    fs::create_directory(m_root / "a/jobs2");
  }));
}

TEST_P(FolderMonitorTest, MayEndWithinItsOwnCall) {
  const fs::path folder = m_root / "jobs";
  fs::create_directory(folder);
  int count = 0;
  auto guard = std::make_shared<std::string>("still there after the monitor has gone");
  m_monitor = m_monitors->watch(folder, [this, guard, &count] {
    m_monitor.reset();
    count += static_cast<int>(guard->size() > 0);
  });
  m_temporary.write("jobs/x", "1");
  EXPECT_TRUE(eventually([&] { return count > 0; }));
  m_temporary.write("jobs/y", "1");
  testdata::settle();
  EXPECT_EQ(count, 1);
}

TEST_P(FolderMonitorTest, SurvivesManyFilesAtOnce) {
  const fs::path folder = m_root / "jobs";
  fs::create_directory(folder);
  watch(folder);
  EXPECT_TRUE(isReported([&] {
    for (int i = 0; i < 2000; ++i) std::ofstream(folder / std::to_string(i)) << i;
  }));
  EXPECT_TRUE(isReported([&] { m_temporary.write("jobs/one-more", "1"); }));
}

TEST_P(FolderMonitorTest, SurvivesALoopOfLinks) {
  fs::create_directory_symlink("loop", m_root / "loop");
  watch(m_root / "loop/jobs");
  EXPECT_TRUE(isReported([&] {
    fs::remove(m_root / "loop");
    fs::create_directories(m_root / "loop/jobs");
  }));
}

TEST(PathWalk, ResolvesPathsLikeTheKernel) {
  const testdata::TemporaryFolder temporary;
  const fs::path root = fs::canonical(temporary.path());
  fs::create_directories(root / "real/inner/deep");
  fs::create_directory_symlink("real/inner", root / "relative");
  fs::create_directory_symlink(root / "real", root / "absolute");
  fs::create_directory_symlink("loop", root / "loop");
  fs::create_directory_symlink("nowhere", root / "dangling");
  temporary.write("file", "");

  const struct {
    const char* path;
    std::optional<const char*> end;
  } rows[] = {
      {"real/inner", "real/inner"},     {"real//inner/./", "real/inner"},    {"relative/deep", "real/inner/deep"},
      {"absolute/inner", "real/inner"}, {"relative/../inner", "real/inner"}, {"loop", std::nullopt},
      {"dangling", std::nullopt},       {"missing/inner", std::nullopt},     {"file", std::nullopt},
  };
  for (const auto& row : rows) {
    const auto end = walkTo(root / row.path, [](const fs::path&, const std::string&) {});
    EXPECT_EQ(end, row.end ? std::optional(root / *row.end) : std::nullopt) << row.path;
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FolderMonitorTest, testing::ValuesIn(kinds),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace mirvel::ui
