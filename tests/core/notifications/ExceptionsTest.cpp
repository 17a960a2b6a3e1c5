#include "core/notifications/Exceptions.h"

#include <gmock/gmock.h>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Array;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;

class ExceptionsTest : public testing::Test {
 protected:
  ExceptionsTest() {
    troubles.setListener([this](const StoreTrouble& trouble) { reported.push_back(trouble.kind); });
  }

  void write(const Dictionary& content) const { folder.write("Exceptions.plist", *propertylist::writeXml(content)); }
  Dictionary content() const {
    auto list = propertylist::readDictionary(testdata::bytes(file));
    EXPECT_TRUE(list);
    return list ? *list : Dictionary();
  }

  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "Exceptions.plist";
  StoreTroubles troubles;
  std::vector<StoreTrouble::Kind> reported;
  Exceptions exceptions{folder.path(), &troubles};
};

TEST_F(ExceptionsTest, EachKeyIsReadByItself) {
  const Array names{"a", "b"};
  struct Row {
    const char* what;
    Dictionary content;
    std::vector<std::string> names, prefixes, quiet;
    bool tellsFailures = true;
  };
  const Row table[] = {
      {"both lists", {{"Exceptions", names}, {"ExceptionsPrefix", Array{"org."}}}, {"a", "b"}, {"org."}, {}},
      {"no prefixes", {{"Exceptions", names}}, {"a", "b"}, {"com.apple"}, {}},
      {"only prefixes", {{"ExceptionsPrefix", Array{"org."}}}, {}, {"org."}, {}},
      {"empty prefixes", {{"ExceptionsPrefix", Array{"", "x", ""}}}, {}, {"x"}, {}},
      {"failures", {{"QuietFailures", names}, {"ExceptionsPrefix", Array{}}}, {}, {}, {"a", "b"}},
      {"no failures", {{"TellFailures", false}, {"ExceptionsPrefix", Array{}}}, {}, {}, {}, false},
      {"other elements", {{"Exceptions", Array{1, "a"}}, {"ExceptionsPrefix", Array{}}}, {"a"}, {}, {}},
  };
  for (const Row& row : table) {
    SCOPED_TRACE(row.what);
    write(row.content);
    EXPECT_EQ(exceptions.names(), row.names);
    EXPECT_EQ(exceptions.prefixes(), row.prefixes);
    EXPECT_EQ(exceptions.quietFailures(), row.quiet);
    EXPECT_EQ(exceptions.tellsFailures(), row.tellsFailures);
    EXPECT_EQ(content(), row.content) << "reading writes nothing";
  }
  EXPECT_THAT(reported, IsEmpty());
}

TEST_F(ExceptionsTest, WithoutAFileNothingIsExceptedAndNoneIsMade) {
  EXPECT_THAT(exceptions.prefixes(), IsEmpty());
  EXPECT_TRUE(exceptions.tellsChanges("com.apple.x", Kind::systemAgent));
  EXPECT_FALSE(exceptions.addMissingPrefixes());
  EXPECT_FALSE(fs::exists(file));
  ASSERT_TRUE(exceptions.setTellsChanges("a", false));
  EXPECT_EQ(content(), (Dictionary{{"Exceptions", Array{"a"}}, {"ExceptionsPrefix", Array{}}}));
}

TEST_F(ExceptionsTest, AFileWithoutPrefixesGetsTheDefaultOne) {
  write({{"Exceptions", Array{"a"}}, {"Other", 1}});
  EXPECT_TRUE(exceptions.addMissingPrefixes());
  EXPECT_EQ(content(),
            (Dictionary{{"Exceptions", Array{"a"}}, {"ExceptionsPrefix", Array{"com.apple"}}, {"Other", 1}}));
  EXPECT_FALSE(exceptions.addMissingPrefixes());
}

TEST_F(ExceptionsTest, AChangeIsAppliedToWhatTheFileHasNow) {
  write({{"Exceptions", Array{"a", 7, "b", "a"}}, {"ExceptionsPrefix", Array{"p"}}});
  Exceptions agent(folder.path());
  EXPECT_THAT(exceptions.names(), ElementsAre("a", "b", "a"));
  EXPECT_THAT(agent.names(), ElementsAre("a", "b", "a"));
  ASSERT_TRUE(agent.setTellsChanges("new", false));
  ASSERT_TRUE(exceptions.setTellsChanges("a", true));
  ASSERT_TRUE(agent.setTellsFailures("quiet", false));
  ASSERT_TRUE(exceptions.setTellsFailures(false));
  ASSERT_TRUE(agent.setTellsChanges("new", false)) << "already in there";
  ASSERT_TRUE(agent.setTellsChanges("", false));
  EXPECT_EQ(content(), (Dictionary{{"Exceptions", Array{7, "b", "new"}},
                                   {"ExceptionsPrefix", Array{"p"}},
                                   {"QuietFailures", Array{"quiet"}},
                                   {"TellFailures", false}}));
}

TEST_F(ExceptionsTest, AFailedWriteIsToldAndMadeUpForWithoutUndoingOthers) {
  fs::create_directory(folder.path() / "blocked");
  Exceptions blocked(folder.path() / "blocked" / "support", &troubles);
  folder.write("blocked/support", "a file where the folder should be");
  EXPECT_FALSE(blocked.setTellsChanges("a", false));
  EXPECT_THAT(reported, ElementsAre(StoreTrouble::Kind::Unwritten));
  EXPECT_FALSE(blocked.tellsChanges("a", Kind::userAgent)) << "it is in effect nevertheless";
  fs::remove(folder.path() / "blocked" / "support");
  ASSERT_TRUE(Exceptions(folder.path() / "blocked" / "support").setTellsChanges("by another", false));
  ASSERT_TRUE(blocked.setTellsChanges("b", false));
  EXPECT_THAT(blocked.names(), ElementsAre("by another", "a", "b"));
}

TEST_F(ExceptionsTest, AKeyOfTheWrongTypeIsSetAsideWithTheFile) {
  const Dictionary damaged{{"Exceptions", "a"}, {"ExceptionsPrefix", Array{"p"}}, {"QuietFailures", Array{"q"}}};
  write(damaged);
  EXPECT_THAT(exceptions.names(), IsEmpty());
  EXPECT_THAT(exceptions.prefixes(), ElementsAre("p"));
  EXPECT_THAT(exceptions.quietFailures(), ElementsAre("q"));
  EXPECT_THAT(reported, ElementsAre(StoreTrouble::Kind::Damaged));
  EXPECT_EQ(*propertylist::readDictionary(testdata::bytes(folder.path() / "Exceptions.plist.damaged-1")), damaged);
  EXPECT_EQ(content(), (Dictionary{{"ExceptionsPrefix", Array{"p"}}, {"QuietFailures", Array{"q"}}}));
}

TEST_F(ExceptionsTest, PrefixesExcludeWhatBeginsWithThem) {
  write({{"ExceptionsPrefix", Array{"com.apple", "org.", ""}}, {"Exceptions", Array{"one"}}});
  struct Row {
    const char* name;
    Kind kind;
    bool isTold;
  };
  constexpr Row table[] = {
      {"com.apple.x", Kind::systemAgent, false}, {"com.apple.x", Kind::systemDaemon, false},
      {"com.apple", Kind::systemDaemon, false},  {"com.apple.x", Kind::userAgent, true},
      {"com.apple.x", Kind::localDaemon, true},  {"org.x", Kind::userAgent, false},
      {"Org.x", Kind::userAgent, true},          {"my.org.x", Kind::userAgent, true},
      {"one", Kind::localDaemon, false},         {"one.more", Kind::localDaemon, true},
  };
  for (const Row& row : table) EXPECT_EQ(exceptions.tellsChanges(row.name, row.kind), row.isTold) << row.name;
  EXPECT_TRUE(exceptions.tellsFailures("one", Kind::userAgent)) << "a list of its own";
  EXPECT_FALSE(exceptions.tellsFailures("org.x", Kind::userAgent));
}

TEST_F(ExceptionsTest, OneOccurrenceOfAPrefixIsReplaced) {
  struct Row {
    const char* old;
    std::size_t occurrence;
    const char* text;
    Array result;
  };
  const Row table[] = {
      {"a", 0, "x", {"x", 1, "b", "a"}},     {"a", 1, "x", {"a", 1, "b", "x"}},
      {"a", 1, "", {"a", 1, "b"}},           {"a", 2, "x", {"a", 1, "b", "a", "x"}},
      {"", 0, "a", {"a", 1, "b", "a", "a"}}, {"gone", 0, "", {"a", 1, "b", "a"}},
  };
  for (const Row& row : table) {
    write({{"ExceptionsPrefix", Array{"a", 1, "b", "a"}}});
    ASSERT_TRUE(exceptions.replacePrefix(row.old, row.occurrence, row.text));
    EXPECT_EQ(*content().get<Array>("ExceptionsPrefix"), row.result) << row.old << row.occurrence << row.text;
  }
}

}  // namespace
}  // namespace mirvel
