#include "core/preferences/FolderList.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

class FolderListTest : public testdata::ProgramFixture {
 protected:
  FolderList list() { return {foundation.defaults, fileQueue, queue, foundation.localize, roots.home}; }
  std::string make(const std::string& name) const {
    fs::create_directories(folder.path() / name);
    return folder.path() / name;
  }
  void answer() {
    fileQueue.runAll();
    queue.runDue();
  }
  static Texts titles(const FolderList& list) {
    Texts result;
    for (const Folder& folder : list.folders()) result.push_back(folder.title);
    return result;
  }
  static Texts problems(const FolderList& list) {
    Texts result;
    for (const Folder& folder : list.folders()) result.push_back(folder.problem);
    return result;
  }
  std::string stored() const { return testdata::bytes(roots.defaultsFile); }
};

TEST_F(FolderListTest, AFolderAppearsOnceInWhateverSpelling) {
  auto folders = list();
  const std::string b = make("b"), a = make("a");
  ASSERT_TRUE(folders.add({b, a}));
  ASSERT_TRUE(folders.add({a + "/", folder.path() / "x" / ".." / "b", b + "/.", a}));
  EXPECT_THAT(foundation.defaults.folders(), ElementsAre(b, a)) << "in the order in which they were added";
  EXPECT_EQ(titles(folders), (Texts{"b", "a"}));
  folders.remove(b + "/");
  EXPECT_THAT(foundation.defaults.folders(), ElementsAre(a));
  // Somebody has edited the settings.
  ASSERT_TRUE(foundation.defaults.setFolders({a, a + "/", b}));
  EXPECT_EQ(titles(folders), (Texts{"a", "b"}));
}

TEST_F(FolderListTest, AFolderThatCantBeListedStaysWithTheReason) {
  const std::string there = make("there"), gone = make("gone"), closed = make("closed");
  const std::string file = folder.write("file", "");
  ASSERT_TRUE(foundation.defaults.setFolders({there, gone, file, closed, "Jobs"}));
  fs::remove(gone);
  fs::permissions(closed, fs::perms::none);
  const std::string before = stored();
  auto folders = list();
  int changes = 0;
  const auto subscription = folders.changed().subscribe([&] { ++changes; });
  folders.check();
  EXPECT_THAT(problems(folders), testing::Each("")) << "as long as nothing is known";
  answer();
  const auto found = problems(folders);
  fs::permissions(closed, fs::perms::owner_all);
  ASSERT_EQ(found.size(), 5U);
  EXPECT_EQ(found[0], "");
  EXPECT_EQ(found[1], "doesn’t exist, or its disk isn’t mounted");
  EXPECT_EQ(found[2], "not a folder");
  EXPECT_EQ(found[3], ::geteuid() == 0 ? "" : "can’t be read: Permission denied");
  EXPECT_EQ(found[4], "not an absolute path");
  EXPECT_EQ(folders.folders()[1].toolTip, gone + " (doesn’t exist, or its disk isn’t mounted)");
  EXPECT_EQ(stored(), before) << "looking at the list writes nothing";

  fs::create_directory(gone);
  const int known = changes;
  folders.check();
  answer();
  EXPECT_EQ(problems(folders)[1], "");
  EXPECT_GT(changes, known);
  EXPECT_LE(changes, known + 2) << "only for what has changed";
}

TEST_F(FolderListTest, FoldersThatEndAlikeShowTheirPaths) {
  const std::string home = roots.home;
  ASSERT_TRUE(foundation.defaults.setFolders({home + "/sync/jobs", "/srv/jobs", "/srv/other", "/"}));
  const auto folders = list();
  EXPECT_EQ(titles(folders), (Texts{"~/sync/jobs", "/srv/jobs", "other", "/"}));
}

TEST_F(FolderListTest, APathThatTheSettingsCantContainIsRefused) {
  auto folders = list();
  const std::string good = make("good");
  const auto added = folders.add({folder.path() / "\xff", good});
  ASSERT_FALSE(added);
  EXPECT_EQ(added.error().code, Error::Code::BadArgument);
  EXPECT_EQ(added.error().file, folder.path() / "\xff");
  EXPECT_THAT(foundation.defaults.folders(), ElementsAre(good)) << "the others are added";
}

TEST_F(FolderListTest, AnAnswerAfterTheListIsGoneIsDropped) {
  ASSERT_TRUE(foundation.defaults.setFolders({"/nowhere"}));
  {
    auto folders = list();
    folders.check();
    fileQueue.runAll();
  }
  queue.runDue();
}

}  // namespace
}  // namespace mirvel
