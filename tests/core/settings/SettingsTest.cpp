#include "core/settings/Store.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/settings/Defaults.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using propertylist::Dictionary;
using propertylist::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StoreTest : public testing::Test {
 protected:
  StoreTest() {
    troubles.setListener([this](const StoreTrouble& trouble) { reported.push_back(trouble); });
  }

  /// A settings file with this content.
  void write(const Dictionary& content) const { folder.write("List.plist", *propertylist::writeXml(content)); }
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
  /// The kinds of all reports: (d)amaged, un(r)ead, un(w)ritten.
  std::string reportedKinds() const {
    std::string kinds;
    for (const auto& trouble : reported) kinds += "drw"[static_cast<int>(trouble.kind)];
    return kinds;
  }

  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "List.plist";
  StoreTroubles troubles;
  std::vector<StoreTrouble> reported;
};

TEST_F(StoreTest, AMissingFileIsEmptyAndCreatedForTheUserOnly) {
  Store store(folder.path() / "a" / "b" / "List.plist", &troubles);
  EXPECT_EQ(store.contents().size(), 0U);
  EXPECT_FALSE(fs::exists(folder.path() / "a"));
  ASSERT_TRUE(store.set("key", "value"));
  EXPECT_EQ(fs::status(folder.path() / "a" / "b" / "List.plist").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  for (const char* made : {"a", "a/b"}) {
    EXPECT_EQ(fs::status(folder.path() / made).permissions(), fs::perms::owner_all) << made;
  }
  EXPECT_THAT(reported, IsEmpty());
}

TEST_F(StoreTest, EachDamagedFileIsKeptUnderANewNameAndReportedOnce) {
  folder.write("List.plist.damaged-1", "from before");
  const std::string damaged[] = {"", "<plist><dict><key>a", "text", *propertylist::writeXml(propertylist::Array{1}),
                                 "bplist00\xff"};
  for (std::size_t i = 0; i < std::size(damaged); ++i) {
    folder.write("List.plist", damaged[i]);
    reported.clear();
    Store store(file, &troubles);
    EXPECT_EQ(store.find("key"), nullptr);
    ASSERT_TRUE(store.set("key", "new"));
    const fs::path rescue = folder.path() / ("List.plist.damaged-" + std::to_string(i + 2));
    EXPECT_EQ(testdata::bytes(rescue), damaged[i]);
    EXPECT_EQ(content(), Value(Dictionary{{"key", "new"}}));
    ASSERT_EQ(reportedKinds(), "d") << damaged[i];
    EXPECT_EQ(reported.front().rescue, rescue);
    EXPECT_EQ(reported.front().error.file, file);
  }
  EXPECT_EQ(testdata::bytes(folder.path() / "List.plist.damaged-1"), "from before");
}

TEST_F(StoreTest, AFileThatAnotherProgramHasRepairedIsntSetAside) {
  const Error damage{.code = Error::Code::WrongType, .message = "wrong"};
  write(Dictionary{{"key", "wrong type"}});
  Store store(file, &troubles);
  EXPECT_NE(store.find("key"), nullptr);
  ASSERT_TRUE(Store(file).set("key", true));
  const auto first = store.setAside(damage, Dictionary{{"other", 1}});
  ASSERT_TRUE(first);
  EXPECT_FALSE(*first);
  EXPECT_EQ(content(), Value(Dictionary{{"key", true}}));
  EXPECT_EQ(*store.find("key"), Value(true));
  EXPECT_THAT(names(), ElementsAre("List.plist"));
  EXPECT_EQ(reportedKinds(), "");

  const auto second = store.setAside(damage, Dictionary{{"other", 1}});
  ASSERT_TRUE(second);
  EXPECT_TRUE(*second);
  EXPECT_EQ(content(), Value(Dictionary{{"other", 1}})) << "what is kept takes its place";
  EXPECT_THAT(names(), ElementsAre("List.plist", "List.plist.damaged-1"));
  EXPECT_EQ(reportedKinds(), "d");
}

TEST_F(StoreTest, AFileThatCantBeReadIsLeftAsItIsAndNeverWritten) {
  const auto writeOld = [&] { write(Dictionary{{"old", 1}}); };
  const std::pair<const char*, std::function<void()>> table[] = {
      {"a folder", [&] { fs::create_directories(file / "inside"); }},
      {"too large", [&] { writeOld(), fs::resize_file(file, Store::largestFile + 1); }},
      {"no permission", [&] { writeOld(), fs::permissions(file, fs::perms::none); }},
  };
  for (const auto& [name, make] : table) {
    if (::geteuid() == 0 && std::string(name) == "no permission") continue;  // root may read everything
    SCOPED_TRACE(name);
    reported.clear();
    make();
    const auto size = [&] { return fs::exists(file / "inside") ? 0 : fs::file_size(file); };
    const auto before = size();
    Store store(file, &troubles);
    EXPECT_EQ(store.contents().size(), 0U);
    EXPECT_FALSE(store.set("new", 1));
    EXPECT_FALSE(store.set("new", 2));
    EXPECT_FALSE(store.clear());
    EXPECT_EQ(*store.find("new"), Value(2)) << "kept in memory";
    EXPECT_EQ(reportedKinds(), "r");
    EXPECT_THAT(names(), ElementsAre("List.plist"));
    EXPECT_EQ(size(), before);

    fs::remove_all(file);
    writeOld();
    ASSERT_TRUE(store.write());
    EXPECT_EQ(content(), Value(Dictionary{{"new", 2}, {"old", 1}}));
    fs::remove_all(file);
    make();
    EXPECT_FALSE(store.refresh());
    EXPECT_EQ(reportedKinds(), "rr") << "it had been gone in between";
    fs::remove_all(file);
  }
}

TEST_F(StoreTest, AnUpdateIsAppliedToWhatTheFileHasWhenItIsWritten) {
  const auto plusOne = [](const Value* present) -> std::optional<Value> {
    const auto* const number = present ? present->as<propertylist::Integer>() : nullptr;
    return Value(number ? number->toInt64().value_or(0) + 1 : 1);
  };
  Store store(file, &troubles), other(file, &troubles);
  store.update("a", plusOne);
  store.update("a", plusOne);
  EXPECT_EQ(*store.find("a"), Value(2));
  ASSERT_TRUE(other.set("a", 10));
  EXPECT_EQ(*store.find("a"), Value(12)) << "as soon as the file has changed";
  ASSERT_TRUE(store.write());
  ASSERT_TRUE(store.write());
  EXPECT_EQ(content(), Value(Dictionary{{"a", 12}})) << "once";
  store.update("a", plusOne);
  store.put("a", 5);
  ASSERT_TRUE(store.write());
  EXPECT_EQ(content(), Value(Dictionary{{"a", 5}})) << "a value replaces earlier updates";
}

TEST_F(StoreTest, ChangesAreWrittenByTheNextWriteThatSucceeds) {
  folder.write("blocked", "a file where the folder should be");
  Store store(folder.path() / "blocked" / "List.plist", &troubles);
  EXPECT_FALSE(store.set("a", 1));
  EXPECT_FALSE(store.set("b", 2));
  EXPECT_EQ(reportedKinds(), "w") << "once, until a write succeeds";
  EXPECT_THAT(reported.front().error.text(), HasSubstr("blocked"));
  EXPECT_EQ(store.contents(), (Dictionary{{"a", 1}, {"b", 2}}));

  fs::remove(folder.path() / "blocked");
  ASSERT_TRUE(store.set("c", 3));
  EXPECT_FALSE(store.hasChanges());
  EXPECT_EQ(Store(folder.path() / "blocked" / "List.plist").contents(), (Dictionary{{"a", 1}, {"b", 2}, {"c", 3}}));

  fs::remove_all(folder.path() / "blocked");
  folder.write("blocked", "again");
  EXPECT_FALSE(store.set("d", 4));
  EXPECT_EQ(reportedKinds(), "ww");
}

TEST_F(StoreTest, ChangesByOthersAreKept) {
  Store one(file, &troubles), two(file, &troubles);
  one.put("one", 1);
  ASSERT_TRUE(two.set("two", 2));
  EXPECT_EQ(one.contents(), (Dictionary{{"one", 1}, {"two", 2}}));
  ASSERT_TRUE(one.write());
  ASSERT_TRUE(two.set("one", std::nullopt));
  EXPECT_EQ(one.contents(), (Dictionary{{"two", 2}}));
  folder.write("List.plist", propertylist::writeBinary(Dictionary{{"two", 2}, {"by hand", 3}}));
  EXPECT_EQ(*one.find("by hand"), Value(3));
  fs::remove(file);
  EXPECT_EQ(one.find("two"), nullptr);
  ASSERT_TRUE(two.set("two", 2));
  one.put("late", 4);
  ASSERT_TRUE(one.clear());
  EXPECT_EQ(one.find("late"), nullptr);
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(two.contents().size(), 0U);
  EXPECT_THAT(reported, IsEmpty());
}

TEST_F(StoreTest, EveryValueIsReadBackUnchanged) {
  for (const std::string& text : {"a\1b"s, "a\r\nb"s, "\0"s, "]]>&<"s, "\xf0\x9f\x98\x80"s}) {
    ASSERT_TRUE(Store(file, &troubles).set("text", text));
    EXPECT_EQ(Store(file, &troubles).contents(), (Dictionary{{"text", text}}));
  }
  const Dictionary binary{{"moment", propertylist::Date{0.5}}};
  ASSERT_TRUE(Store(file, &troubles).clear() && Store(file, &troubles).set("moment", propertylist::Date{0.5}));
  EXPECT_EQ(Store(file, &troubles).contents(), binary) << "in the binary form: XML has whole seconds only";
  EXPECT_THAT(reported, IsEmpty());
}

TEST(StoreTroublesTest, ProblemsAreKeptForTheFirstListener) {
  StoreTroubles troubles;
  std::vector<std::string> reported;
  const auto listen = [&](const StoreTrouble& trouble) { reported.push_back(trouble.error.file); };
  const auto report = [&](const char* file) {
    troubles.report(
        {.kind = StoreTrouble::Kind::Unread, .error = {.code = Error::Code::Io, .message = "", .file = file}});
  };
  report("early");
  troubles.setListener(listen);
  report("later");
  troubles.setListener(nullptr);
  report("late");
  EXPECT_THAT(reported, ElementsAre("early", "later"));
}

TEST(StoreKeyTest, BytesOfPathsThatAreNotUtf8AreEscaped) {
  EXPECT_EQ(storeKey(URL::file("/jobs/\xc3\xa4.plist")), "/jobs/\xc3\xa4.plist");
  EXPECT_EQ(storeKey(URL::file("/jobs/a\xff.plist")), "/jobs/a\\xff.plist");
}

class DefaultsTest : public StoreTest {};

TEST_F(DefaultsTest, WritingChangesOneKeyImmediately) {
  write({{"LogLength", 4}, {"Other", "kept"}});
  Defaults one(file), two(file);
  EXPECT_EQ(one.logLength(), 4);
  ASSERT_TRUE(two.setLogLength(2));
  EXPECT_EQ(one.logLength(), 2);
  ASSERT_TRUE(one.negate("ShowInvalidData"));
  ASSERT_TRUE(two.setShowSystemJobs(true));
  ASSERT_TRUE(one.negate("ShowSystemJobs"));
  EXPECT_EQ(
      content(),
      Value(Dictionary{{"LogLength", 2}, {"Other", "kept"}, {"ShowInvalidData", false}, {"ShowSystemJobs", false}}));
}

TEST_F(DefaultsTest, ValuesOfTheWrongTypeAreIgnoredAndKept) {
  const Dictionary odd{{"AutomaticHelp", "NO"},
                       {"NumberOfSavedRevisions", propertylist::Integer::fromUnsigned(UINT64_MAX)},
                       {"LogPeriod", true},
                       {"ShowInvalidData", 0}};
  write(odd);
  Defaults defaults(file);
  EXPECT_TRUE(defaults.automaticHelp());
  EXPECT_EQ(defaults.numberOfSavedRevisions(), 10);
  EXPECT_EQ(defaults.logPeriod(), 1);
  EXPECT_TRUE(defaults.showInvalidData());
  ASSERT_TRUE(defaults.setLogPeriod(2));
  Dictionary expected = odd;
  expected.set("LogPeriod", 2);
  EXPECT_EQ(content(), Value(expected));
}

TEST_F(DefaultsTest, ASettingThatCantBeWrittenIsInEffectUntilTheEndAndReported) {
  fs::create_directories(file);
  Defaults defaults(file, Defaults::Damaged::SetAside, &troubles);
  EXPECT_FALSE(defaults.negate("AutomaticHelp"));
  EXPECT_FALSE(defaults.automaticHelp());
  EXPECT_FALSE(defaults.negate("AutomaticHelp"));
  EXPECT_TRUE(defaults.automaticHelp());
  EXPECT_EQ(reported.size(), 1U);
}

TEST_F(DefaultsTest, EachChangeIsPostedOnceItIsInEffect) {
  write({{"Folders", propertylist::Array{"/a", 5, "/b"}}, {"AutomaticHelp", false}});
  Defaults defaults(file, Defaults::Damaged::SetAside, &troubles);
  EXPECT_THAT(defaults.folders(), ElementsAre("/a", "/b")) << "what isn't a path is skipped";
  std::vector<std::string> posted;
  const auto changed = defaults.changed().subscribe(
      [&](const std::string& key) { posted.push_back(key + (defaults.automaticHelp() ? " on" : " off")); });
  ASSERT_TRUE(defaults.setFolders({"/c"}));
  EXPECT_THAT(defaults.folders(), ElementsAre("/c"));
  ASSERT_TRUE(defaults.remove(Defaults::Key::automaticHelp));
  EXPECT_THAT(posted, ElementsAre("Folders off", "AutomaticHelp on"));
  EXPECT_EQ(content(), Value(Dictionary{{"Folders", propertylist::Array{"/c"}}}));
}

TEST_F(DefaultsTest, ADamagedFileIsLeftOnRequest) {
  folder.write("List.plist", "text");
  Defaults defaults(file, Defaults::Damaged::Leave);
  EXPECT_TRUE(defaults.automaticHelp());
  const auto written = defaults.setAutomaticHelp(false);
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().code, Error::Code::Malformed);
  EXPECT_EQ(testdata::bytes(file), "text");
}

}  // namespace
}  // namespace mirvel
