#include "core/settings/Store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "support/FailingCalls.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using propertylist::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class StoreTest : public testing::Test {
 protected:
  StoreTest() {
    troubles.setListener([this](const StoreTrouble& trouble) { told.push_back(trouble); });
  }

  Value content() const {
    const auto document = propertylist::read(testdata::bytes(file));
    return document ? document->value() : Value("unreadable");
  }
  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator(folder.path())) result.push_back(entry.path().filename());
    std::sort(result.begin(), result.end());
    return result;
  }
  /// Kinds of what was reported: (d)amaged, (r)eading, (w)riting.
  std::string toldKinds() const {
    std::string kinds;
    for (const auto& trouble : told) kinds += "drw"[static_cast<int>(trouble.kind)];
    return kinds;
  }

  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "List.plist";
  StoreTroubles troubles;
  std::vector<StoreTrouble> told;
};

TEST_F(StoreTest, AnAbsentFileIsEmptyAndMadeForItsUserAlone) {
  Store store(folder.path() / "a" / "b" / "List.plist", &troubles);
  EXPECT_EQ(store.contents().size(), 0U);
  ASSERT_TRUE(store.set("key", "value"));
  EXPECT_EQ(fs::status(folder.path() / "a" / "b" / "List.plist").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  for (const char* made : {"a", "a/b"}) {
    EXPECT_EQ(fs::status(folder.path() / made).permissions(), fs::perms::owner_all) << made;
  }
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(StoreTest, EachDamagedFileIsKeptUnderAFreshNameAndReportedOnce) {
  folder.write("List.plist.damaged-1", "from before");
  const std::vector<std::string> damaged{"", "<plist><dict><key>a", "text",
                                         *propertylist::writeXml(propertylist::Array{1}), "bplist00\xff"};
  for (std::size_t i = 0; i < damaged.size(); ++i) {
    folder.write("List.plist", damaged[i]);
    told.clear();
    Store store(file, &troubles);
    EXPECT_EQ(store.find("key"), nullptr);
    ASSERT_TRUE(store.set("key", "new"));
    const fs::path rescue = folder.path() / ("List.plist.damaged-" + std::to_string(i + 2));
    EXPECT_EQ(testdata::bytes(rescue), damaged[i]);
    EXPECT_EQ(content(), Value(Dictionary{{"key", "new"}}));
    ASSERT_EQ(toldKinds(), "d") << damaged[i];
    EXPECT_EQ(told.front().rescue, rescue);
    EXPECT_EQ(told.front().error.file, file);
  }
  EXPECT_EQ(testdata::bytes(folder.path() / "List.plist.damaged-1"), "from before");
}

TEST_F(StoreTest, AFileThatCantBeReadIsLeftAloneAndNeverWrittenTo) {
  struct Row {
    const char* name;
    std::function<void()> make;
    std::function<void()> mend;
  };
  const Row table[] = {
      {"a folder", [&] { fs::create_directories(file / "inside"); },
       [&] {
         fs::remove_all(file);
         folder.write("List.plist", *propertylist::writeXml(Dictionary{{"old", 1}}));
       }},
      {"too large",
       [&] {
         folder.write("List.plist", *propertylist::writeXml(Dictionary{{"old", 1}}));
         fs::resize_file(file, Store::largestFile + 1);
       },
       [&] {
         folder.write("List.plist", *propertylist::writeXml(Dictionary{{"old", 1}}));
       }},
      {"no permission",
       [&] {
         folder.write("List.plist", *propertylist::writeXml(Dictionary{{"old", 1}}));
         fs::permissions(file, fs::perms::none);
       },
       [&] { fs::permissions(file, fs::perms::owner_all); }},
  };
  for (const Row& row : table) {
    if (::geteuid() == 0 && std::string(row.name) == "no permission") continue;  // root may read everything
    fs::remove_all(file);
    told.clear();
    row.make();
    const auto before = fs::exists(file / "inside") ? 0 : fs::file_size(file);
    Store store(file, &troubles);
    EXPECT_EQ(store.contents().size(), 0U) << row.name;
    EXPECT_FALSE(store.set("new", 1)) << row.name;
    EXPECT_FALSE(store.set("new", 2)) << row.name;
    EXPECT_FALSE(store.clear()) << row.name;
    EXPECT_EQ(*store.find("new"), Value(2)) << "kept in memory";
    EXPECT_EQ(toldKinds(), "r") << row.name;
    EXPECT_THAT(names(), ElementsAre("List.plist")) << row.name;
    EXPECT_EQ(fs::exists(file / "inside") ? 0 : fs::file_size(file), before) << row.name;

    row.mend();
    ASSERT_TRUE(store.write()) << row.name;
    EXPECT_EQ(content(), Value(Dictionary{{"new", 2}, {"old", 1}})) << row.name;
  }
}

TEST_F(StoreTest, WhatCantBeWrittenGoesOutWithTheNextWriteThatSucceeds) {
  folder.write("blocked", "a file where the folder should be");
  Store store(folder.path() / "blocked" / "List.plist", &troubles);
  EXPECT_FALSE(store.set("a", 1));
  EXPECT_FALSE(store.set("b", 2));
  EXPECT_EQ(toldKinds(), "w") << "once, until it has gone";
  EXPECT_THAT(told.front().error.text(), HasSubstr("blocked"));
  EXPECT_EQ(store.contents(), (Dictionary{{"a", 1}, {"b", 2}}));

  fs::remove(folder.path() / "blocked");
  ASSERT_TRUE(store.set("c", 3));
  EXPECT_FALSE(store.hasChanges());
  EXPECT_EQ(Store(folder.path() / "blocked" / "List.plist").contents(), (Dictionary{{"a", 1}, {"b", 2}, {"c", 3}}));

  fs::remove_all(folder.path() / "blocked");
  folder.write("blocked", "again");
  EXPECT_FALSE(store.set("d", 4));
  EXPECT_EQ(toldKinds(), "ww");
}

TEST_F(StoreTest, ADeviceThatFailsAtAnyStepLosesNeitherTheFileNorTheChange) {
  const auto old = [] { return Dictionary{{"a", "old"}, {"b", 1}}; };
  int step = 1;
  for (bool failed = true; failed; ++step) {
    ASSERT_TRUE(Store(file).set("a", "old") && Store(file).set("b", 1));
    told.clear();
    testdata::FailingCalls calls(step, 100);
    Store store(file, &troubles, Store::Damaged::SetAside, &calls);
    const bool isWritten = static_cast<bool>(store.set("a", "new"));
    failed = calls.failed();
    EXPECT_EQ(isWritten, !failed) << "step " << step;
    EXPECT_EQ(toldKinds(), failed ? "w" : "") << "step " << step;
    EXPECT_EQ(content(), Value(calls.renamed() ? Dictionary{{"a", "new"}, {"b", 1}} : old())) << "step " << step;
    EXPECT_EQ(*store.find("a"), Value("new")) << "step " << step;
    EXPECT_THAT(names(), ElementsAre("List.plist")) << "step " << step;

    ASSERT_TRUE(store.write()) << "the device works again, step " << step;
    EXPECT_EQ(content(), Value(Dictionary{{"a", "new"}, {"b", 1}})) << "step " << step;
    ASSERT_LT(step, 100);
  }
  EXPECT_GE(step, 9) << "create, at least two writes, mode, flush, close, rename, flush of the folder, and no failure";
}

TEST_F(StoreTest, ChangesOfOthersAreKeptBesideOnesOwn) {
  Store one(file, &troubles), two(file, &troubles);
  one.put("one", 1);
  ASSERT_TRUE(two.set("two", 2));
  EXPECT_EQ(one.contents(), (Dictionary{{"one", 1}, {"two", 2}}));
  ASSERT_TRUE(one.write());
  ASSERT_TRUE(two.set("one", std::nullopt));
  EXPECT_EQ(one.contents(), (Dictionary{{"two", 2}}));
  ASSERT_TRUE(one.clear());
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(two.contents().size(), 0U);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(StoreTest, EveryTextComesBackAsItWas) {
  for (const std::string& text :
       {std::string("a\x01"
                    "b"),
        std::string("a\r\nb"), std::string("\0", 1), std::string("]]>&<"), std::string("\xf0\x9f\x98\x80")}) {
    Store store(file, &troubles);
    ASSERT_TRUE(store.set("text", text));
    ASSERT_TRUE(store.set("other", 1));
    Store again(file, &troubles);
    ASSERT_TRUE(again.find("text")) << testing::PrintToString(text);
    EXPECT_EQ(*again.find("text"), Value(text));
  }
  EXPECT_THAT(told, IsEmpty());
}

TEST(StoreTroublesTest, WhatHappensBeforeAnybodyListensWaits) {
  StoreTroubles troubles;
  std::vector<std::string> told;
  const auto listen = [&](const StoreTrouble& trouble) { told.push_back(trouble.error.file); };
  const auto report = [&](const char* file) {
    troubles.report(
        {.kind = StoreTrouble::Kind::Unread, .error = {.code = Error::Code::Io, .message = "", .file = file}});
  };
  report("early");
  troubles.setListener(listen);
  report("later");
  troubles.setListener(nullptr);
  report("late");
  EXPECT_THAT(told, ElementsAre("early", "later"));
}

TEST(StoreKeyTest, APathThatIsNoTextHasAKeyOfItsOwn) {
  EXPECT_EQ(storeKey(URL::file("/jobs/\xc3\xa4.plist")), "/jobs/\xc3\xa4.plist");
  EXPECT_EQ(storeKey(URL::file("/jobs/a\xff.plist")), "/jobs/a\\xff.plist");
}

}  // namespace
}  // namespace mirvel
