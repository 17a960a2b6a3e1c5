#include "core/loginitems/BundledItems.h"

#include <gtest/gtest.h>

#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::TemporaryFolder;
using Names = std::vector<std::string>;

class BundledItemsTest : public testing::Test {
 protected:
  void item(const std::string& application, const std::string& name) const {
    m_folder.write(fs::path(application) / "Contents/Library/LoginItems" / name / "Info.plist", "");
  }
  Names names() const {
    Names result;
    for (const auto& found : bundledItems(m_folder.path())) result.push_back(found.name + ": " + found.itemName);
    return result;
  }

  TemporaryFolder m_folder;
};

TEST_F(BundledItemsTest, AnItemHasItsApplication) {
  item("Sound 2.1.app", "Helper.app");
  const auto items = bundledItems(m_folder.path());
  ASSERT_EQ(items.size(), 1U);
  const fs::path application = m_folder.path() / "Sound 2.1.app";
  EXPECT_EQ(items[0].name, "Sound 2.1");
  EXPECT_EQ(items[0].itemName, "Helper.app");
  EXPECT_EQ(items[0].itemPath, application / "Contents/Library/LoginItems/Helper.app");
  EXPECT_EQ(items[0].applicationPath, application);
}

TEST_F(BundledItemsTest, TheSearchGoesOneFolderDeep) {
  item("B.app", "b");
  item("Tools/A.app", "a");
  item("Tools/Deep/C.app", "c");
  item("B.app/Inner.app", "d");
  item("Tool.APP", "e");
  EXPECT_EQ(names(), (Names{"B: b", "A: a"}));
}

TEST_F(BundledItemsTest, OnlyTheFirstVisibleItemOfABundleCounts) {
  item("A.app", "z");
  item("A.app", "b");
  item("A.app", ".a");
  item("B.app", ".hidden");
  item(".C.app", "c");
  item(".Tools/D.app", "d");
  EXPECT_EQ(names(), (Names{"A: b"}));
}

TEST_F(BundledItemsTest, UnreadableFoldersAreSkipped) {
  item("Good.app", "g");
  m_folder.write("File.app", "");
  m_folder.write("Flat.app/Contents/Library/LoginItems", "");
  m_folder.write("Empty.app/Contents/Info.plist", "");
  fs::create_directories(m_folder.path() / "None.app/Contents/Library/LoginItems");
  fs::create_directory_symlink("Loop.app", m_folder.path() / "Loop.app");
  fs::create_directory_symlink(".", m_folder.path() / "Again");
  fs::create_directory_symlink("Good.app", m_folder.path() / "Link.app");
  EXPECT_EQ(names(), (Names{"Good: g", "Link: g"}));
  EXPECT_TRUE(bundledItems(m_folder.path() / "missing").empty());
  EXPECT_TRUE(bundledItems({}).empty());
}

}  // namespace
}  // namespace mirvel
