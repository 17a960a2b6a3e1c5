#include "core/loginitems/SystemEventsItems.h"

#include <gmock/gmock.h>

#include "core/catalogue/LoginItem.h"
#include "core/loginitems/BundledItems.h"
#include "support/FakeProcessRunner.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using Names = std::vector<std::string>;

class SystemEventsItemsTest : public testing::Test {
 protected:
  /// The items of an output in which `|` ends a field and `$` a record, as "name|path|kind".
  std::vector<std::string> listed(std::string output) {
    for (char& c : output) c = c == '|' ? '\x1F' : c == '$' ? '\x1E' : c;
    m_runner.answer = ProcessResult{.output = output};
    return listed();
  }
  std::vector<std::string> listed() {
    std::vector<std::string> result;
    for (const auto& item : m_items.listed()) {
      result.push_back(item.name + '|' + item.path + '|' + item.kind);
    }
    return result;
  }

  testdata::FakeProcessRunner m_runner;
  SystemEventsItems m_items{m_runner, "/tools/osascript", "/missing"};
};

TEST_F(SystemEventsItemsTest, RemovalPassesTheItemAsArgumentsAndNotInTheScript) {
  m_runner.answer = ProcessResult{.output = "a\" & beep & \"\x1F/p\x1F\x1F\x1E"};
  const Jobs jobs = LoginItem::systemPreferencesItems(m_items, false);
  ASSERT_EQ(jobs.size(), 1U);
  m_runner.calls.clear();
  EXPECT_TRUE(m_items.remove(dynamic_cast<const LoginItem&>(*jobs[0])));
  EXPECT_THAT(m_runner.calls,
              ElementsAre(ElementsAre("/tools/osascript", "-e", HasSubstr("delete"), "a\" & beep & \"", "/p")));

  m_runner.answer = ProcessResult{.exitStatus = 1, .complaints = "not allowed"};
  const auto refused = m_items.remove(dynamic_cast<const LoginItem&>(*jobs[0]));
  ASSERT_FALSE(refused);
  EXPECT_THAT(refused.error().text(), HasSubstr("not allowed"));
}

TEST_F(SystemEventsItemsTest, TheToolIsRunOnceForAllItems) {
  EXPECT_TRUE(listed("").empty());
  EXPECT_TRUE(m_items.bundled().empty());
  EXPECT_THAT(m_runner.calls,
              ElementsAre(ElementsAre("/tools/osascript", "-e", HasSubstr("tell application \"System Events\""))));
}

TEST_F(SystemEventsItemsTest, IncompleteRecordsAreSkipped) {
  const struct {
    std::string output;
    std::vector<std::string> items;
  } table[] = {
      {"\n", {}},
      {"A|/a|Application|$\n", {"A|/a|Application"}},
      {"B|/b|Application|$A|/a||$\n", {"B|/b|Application", "A|/a|"}},
      {"A, \"b\"\nc, d\\|/a\t{e}|Application|$\n", {"A, \"b\"\nc, d\\|/a\t{e}|Application"}},
      {"Uhr \xC3\xBC\xFF|/\xFE|UNKNOWN|$\n", {"Uhr \xC3\xBC\xFF|/\xFE|UNKNOWN"}},
      {"A|/a|Application|\n", {}},
      {"A|/a|Application$\n", {}},
      {"A|/a|$B|/b|Application|$\n", {"B|/b|Application"}},
      {"A|/a|Application|more|$B|/b|Application|$\n", {"B|/b|Application"}},
      {"$$|||$\n", {"||"}},
  };
  for (const auto& row : table) EXPECT_EQ(listed(row.output), row.items) << row.output;
}

TEST_F(SystemEventsItemsTest, AFailedOrMissingToolYieldsNothing) {
  m_runner.answer = ProcessResult{.exitStatus = 1,
                                  .output = "A\x1F/a\x1F\x1F\x1E\n",
                                  .complaints = "execution error: Not authorised to send Apple events (-1743)"};
  EXPECT_TRUE(listed().empty());
  m_runner.answer = Error{.code = Error::Code::NotFound, .message = "can't run"};
  EXPECT_TRUE(listed().empty());
}

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
