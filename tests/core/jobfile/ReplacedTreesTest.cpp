#include <gtest/gtest.h>

#include "core/jobfile/JobFile.h"
#include "support/TestData.h"

namespace mirvel::jobfile {
namespace {

using K = Plist::CodingKeys;
using propertylist::Integer;
using propertylist::Value;

/// Values that the record can't represent, beside some that it can.
const Dict oddSockets = {{"Listener", Dict{{"SockServiceName", "1069"}, {"SockPathOwner", "root"}, {"Odd", 86400.0}}},
                         {"Many", List{Dict{{"SockPassive", false}}, Dict{}}},
                         {"Text", "not a socket"},
                         {"Huge", Integer::fromUnsigned(UINT64_MAX)},
                         {"Parts", propertylist::Set{{1, propertylist::Uid{7}, propertylist::Date{0.5}}}}};

Value withoutKey(Dict file, const std::string& key) {
  (void)file.remove(key);
  return file;
}

TEST(ReplacedTreesTest, ASaveWritesExactlyTheTree) {
  const Dict trees[] = {{}, oddSockets, {{"Listener", Dict{}}}, {{"", Dict{{"", 1.0}}}}, {{"Listener", true}}};
  const Value before[] = {Dict{{"Label", "job"}}, fileWith("Sockets", oddSockets), fileWith("Sockets", "wrong type"),
                          fileWith("Sockets", Dict{{"Old", Dict{{"SockType", "dgram"}, {"Odd", 1}}}})};
  for (const Value& file : before) {
    for (const Dict& tree : trees) {
      Plist plist = loaded(file);
      ASSERT_TRUE(plist.replaceTree(K::Sockets, tree));
      EXPECT_EQ(plist.savedValue(K::Sockets), Value(tree));
      EXPECT_EQ(Value(plist.encodeAll()), Value(fileWith("Sockets", tree)));
      EXPECT_EQ(loaded(plist.encodeAll()).sockets, plist.sockets) << "the field is what reading the file would give";
      EXPECT_FALSE(plist.unknownKeys);

      ASSERT_TRUE(plist.replaceTree(K::Sockets, std::nullopt));
      EXPECT_EQ(plist.savedValue(K::Sockets), std::nullopt);
      EXPECT_EQ(Value(plist.encodeAll()), withoutKey(*file.as<Dict>(), "Sockets"));
    }
  }
}

TEST(ReplacedTreesTest, TheTreeOfTheFileMakesTheRecordUnchanged) {
  const Value file = fileWith("Sockets", oddSockets);
  Plist plist = loaded(file);
  const Plist read = plist.clone();
  ASSERT_TRUE(plist.replaceTree(K::Sockets, Dict{{"Other", Dict{}}}));
  EXPECT_NE(plist, read);
  EXPECT_EQ(plist.asRead()->sockets, read.sockets) << "what was read stays the same";
  ASSERT_TRUE(plist.replaceTree(K::Sockets, oddSockets));
  EXPECT_EQ(plist, read);

  ASSERT_TRUE(plist.replaceTree(K::Sockets, std::nullopt));
  ASSERT_TRUE(plist.replaceTree(K::Sockets, oddSockets));
  EXPECT_EQ(Value(plist.encodeAll()), file);
}

TEST(ReplacedTreesTest, OtherEditsAreKept) {
  Dict file = *Value(fileWith("Sockets", oddSockets)).as<Dict>();
  file.set("MachServices", Dict{{"a", true}, {"b", 5}});
  file.set("KeepAlive", Dict{{"Crashed", true}, {"Odd", 1}});
  file.set("Nice", 3.0);
  Plist plist = loaded(file);
  plist.run = "/bin/ls";
  plist.runAtLoad = true;
  plist.removedValues = {{"KeepAlive", "Odd"}, {"Sockets", "Text"}};
  plist.machServices->bools["c"] = false;
  ASSERT_TRUE(plist.replaceTree(K::Sockets, Dict{{"Text", "new"}}));
  EXPECT_EQ(plist.run, "/bin/ls");
  file.set("Sockets", Dict{{"Text", "new"}});
  file.set("KeepAlive", Dict{{"Crashed", true}});
  file.set("MachServices", Dict{{"a", true}, {"b", 5}, {"c", false}});
  file.set("RunAtLoad", true);
  EXPECT_EQ(Value(plist.encodeAll()), Value(file));

  // Edits of the field, and of opaque values, are merged into the tree.
  plist.sockets->dictionaries["New"].sockType = "dgram";
  ASSERT_EQ(plist.opaqueValues().size(), 2U) << "of MachServices and of the tree";
  EXPECT_EQ(plist.opaqueValues().back().text(), "Sockets.Text");
  EXPECT_EQ(plist.savedValue(K::Sockets), Value(Dict{{"New", Dict{{"SockType", "dgram"}}}, {"Text", "new"}}));
  plist.removedValues.push_back({"Sockets", "Text"});
  EXPECT_EQ(plist.savedValue(K::Sockets), Value(Dict{{"New", Dict{{"SockType", "dgram"}}}}));
  EXPECT_EQ(plist.encodeAll().find("Sockets")->as<Dict>()->size(), 1U);
}

TEST(ReplacedTreesTest, ANewJobCanHaveTrees) {
  Plist plist = Plist::blankPlist();
  ASSERT_TRUE(plist.replaceTree(K::LaunchEvents, Dict{{"stream", Dict{{"event", Dict{{"Odd", List{1, "x"}}}}}}}));
  const Dict events = {{"stream", Dict{{"event", Dict{{"Odd", List{1, "x"}}}}}}};
  EXPECT_EQ(Value(plist.encodeAll()), Value(Dict{{"Label", ""}, {"RunAtLoad", true}, {"LaunchEvents", events}}));
  plist.name = "named later";
  plist.runAtLoad.reset();
  EXPECT_EQ(Value(plist.encodeAll()), Value(Dict{{"Label", "named later"}, {"LaunchEvents", events}}));
  ASSERT_TRUE(plist.replaceTree(K::LaunchEvents, std::nullopt));
  EXPECT_EQ(Value(plist.encodeAll()), Value(Dict{{"Label", "named later"}}));
}

TEST(ReplacedTreesTest, ATreeThatCantBeReadAgainIsRefused) {
  Dict deep;
  for (int i = 0; i < 600; ++i) deep = Dict{{"x", std::move(deep)}};
  Plist plist = loaded(fileWith("Sockets", oddSockets));
  const Plist before = plist.clone();
  EXPECT_FALSE(plist.replaceTree(K::Sockets, deep));
  EXPECT_EQ(plist, before);
}

TEST(ReplacedTreesTest, EveryKeyOfAPublishedJobHasTheValueThatASaveWrites) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  for (const auto& file : testdata::files(corpus, ".plist")) {
    const auto plist = Plist::readTolerantly(testdata::bytes(file));
    if (!plist) continue;
    const Dict all = plist->encodeAll();
    for (const std::string_view key : Plist::knownKeys()) {
      const auto saved = plist->savedValue(*Plist::codingKey(key));
      const Value* const expected = all.find(key);
      EXPECT_EQ(saved, expected ? std::optional(*expected) : std::nullopt) << file << ": " << key;
    }
  }
}

}  // namespace
}  // namespace mirvel::jobfile
