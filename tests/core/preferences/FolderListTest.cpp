#include "core/preferences/FolderList.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "core/propertylist/Reader.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

class FolderListTest : public testdata::ProgramFixture {
 protected:
  FolderList list() { return {foundation.defaults, extraFolders, foundation.localize, roots.home}; }
  std::string make(const std::string& name) const {
    fs::create_directories(folder.path() / name);
    return folder.path() / name;
  }
  void answer() {
    checkQueue.runAll();
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

  ExtraFolders extraFolders{foundation.defaults, checkQueue, queue};
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
  EXPECT_EQ(problems(folders), (Texts{"", "", "", "", "not an absolute path"})) << "as long as nothing else is known";
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

TEST_F(FolderListTest, AFolderThatDoesntAnswerSaysSo) {
  ASSERT_TRUE(foundation.defaults.setFolders({make("slow")}));
  const auto folders = list();
  queue.runFor(ExtraFolders::patience + 1);
  EXPECT_EQ(problems(folders), Texts{"doesn’t answer"});
  answer();
  EXPECT_EQ(problems(folders), Texts{""});
}

TEST_F(FolderListTest, OtherElementsOfTheSettingStayAsTheyAre) {
  using propertylist::Array;
  const std::string a = make("a"), b = make("b");
  const auto elements = [&] {
    Array result;
    const auto read = propertylist::readDictionary(stored());
    if (const auto* const array = read ? read->get<Array>(Defaults::Key::folders) : nullptr) result = *array;
    return result;
  };
  ASSERT_TRUE(foundation.defaults.update(Defaults::Key::folders, [](const auto*) {
    return Array{7, "relative", Array{"nested"}, "relative"};
  }));
  auto folders = list();
  ASSERT_TRUE(folders.add({a, b, a}));
  EXPECT_EQ(elements(), (Array{7, "relative", Array{"nested"}, "relative", a, b}));
  folders.remove(a + "/");
  EXPECT_EQ(elements(), (Array{7, "relative", Array{"nested"}, "relative", b}));
  folders.remove("relative");
  EXPECT_EQ(elements(), (Array{7, Array{"nested"}, b}));
}

}  // namespace
}  // namespace mirvel
