#include "core/editor/BrowserTree.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "core/jobfile/JobFile.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using jobfile::Dict;
using jobfile::List;
using jobfile::Plist;
using propertylist::Integer;
using propertylist::Value;

/// Generates values of all types.
class Values {
 public:
  explicit Values(unsigned seed) : m_random(seed) {}

  Dict dictionary(std::size_t depth) {
    const char* const keys[] = {"", "a", "Bonjour", "SockType", "ExceptionServer", "CF$UID", "1", "\u00e4 \n.", "[0]"};
    Dict entries;
    for (std::size_t count = below(5); count > 0; --count) entries.set(keys[below(std::size(keys))], value(depth));
    return entries;
  }

 private:
  std::size_t below(std::size_t count) { return m_random() % count; }
  List array(std::size_t depth) {
    List elements;
    const bool isOfOneType = below(2) == 0;
    const Value first = value(depth);
    for (std::size_t count = below(4); count > 0; --count) elements.push_back(isOfOneType ? first : value(depth));
    return elements;
  }
  Value value(std::size_t depth) {
    const Value leaves[] = {true,
                            false,
                            0,
                            1069,
                            Integer(INT64_MIN),
                            Integer::fromUnsigned(UINT64_MAX),
                            86400.0,
                            -0.0,
                            std::nan(""),
                            "",
                            "1069",
                            "true",
                            propertylist::Data{std::string("\0\xff", 2)},
                            propertylist::Date{0.25},
                            propertylist::Uid{7},
                            propertylist::Set{{1, "x"}}};
    const std::size_t kind = depth == 0 ? 0 : below(3);
    if (kind == 1) return dictionary(depth - 1);
    return kind == 2 ? Value(array(depth - 1)) : leaves[below(std::size(leaves))];
  }

  std::minstd_rand m_random;
};

TEST(BrowserTreeTest, ATreeOfAnyListGivesThisListAndAnUnchangedRecord) {
  Values values(3);
  for (int i = 0; i < 400; ++i) {
    const Dict list = values.dictionary(5);
    for (const BrowserSchema& schema : browserSchemas()) {
      const Dict again = valueOf(itemsOf(list, *schema.top));
      ASSERT_EQ(Value(again), Value(list)) << schema.text();
      Plist plist = jobfile::loaded(jobfile::fileWith(std::string(schema.text()), list));
      ASSERT_TRUE(plist.replaceTree(schema.key, again));
      ASSERT_FALSE(plist.replacedTrees) << "that is the value of the file";
      ASSERT_EQ(plist.savedValue(schema.key), Value(list));
    }
  }
}

TEST(BrowserTreeTest, SoDoThoseOfPublishedJobs) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  int trees = 0;
  for (const auto& file : testdata::files(corpus, ".plist")) {
    auto plist = Plist::readTolerantly(testdata::bytes(file));
    if (!plist) continue;
    const auto text = propertylist::writeXml(plist->encodeAll());
    for (const BrowserSchema& schema : browserSchemas()) {
      const auto saved = plist->savedValue(schema.key);
      if (!saved) continue;
      ++trees;
      ASSERT_TRUE(plist->replaceTree(schema.key, valueOf(itemsOf(*saved->as<Dict>(), *schema.top)))) << file;
    }
    EXPECT_FALSE(plist->replacedTrees) << file;
    EXPECT_EQ(*propertylist::writeXml(plist->encodeAll()), *text) << file;
  }
  EXPECT_EQ(trees, 37);
}

/// Arrays are read in the way that lets the user edit most of them.
TEST(BrowserTreeTest, EachValueIsOfTheTypeThatCanEditIt) {
  using enum BrowserItem::Type;
  const BrowserLevel& sockets = *browserSchema("Sockets")->top;
  const BrowserLevel& events = *browserSchema("LaunchEvents")->top;
  const struct {
    const BrowserLevel& level;
    Value value;
    BrowserItem::Type type;
  } table[] = {
      {sockets, Dict{}, Dictionary},
      {sockets, List{Dict{}, Dict{}}, Array},
      {sockets, List{}, Array},
      {sockets, List{Dict{}, "x", List{Dict{}}}, Array},
      {sockets, List{"x"}, Strings},
      {sockets, List{1}, Kept},
      {events, List{}, Strings},
      {events, List{Dict{}}, Kept},
      {events, List{"x", 1}, Kept},
      {events, true, Boolean},
      {events, "1069", String},
      {events, 1069, Integer},
      {events, 86400.0, Real},
      {events, propertylist::Integer::fromUnsigned(UINT64_MAX), Kept},
      {events, propertylist::Data{"x"}, Kept},
      {events, propertylist::Date{}, Kept},
  };
  for (const auto& row : table) {
    const BrowserItem item = itemOf("name", row.value, row.level);
    EXPECT_EQ(item.type(), row.type) << testing::PrintToString(row.value);
    EXPECT_EQ(valueOf(item), row.value);
  }
}

TEST(BrowserTreeTest, LevelsFollowTheKeys) {
  const auto titles = [](const BrowserLevel& level) {
    std::string text;
    for (const auto& offer : level.offers) text += std::string(offer.title) + ' ';
    return text;
  };
  const std::string freeTypes = "Boolean String Integer Double Array (String) Dictionary ";
  const std::string serviceKeys =
      "ResetAtClose HideUntilCheckIn DrainMessagesOnCrash ExceptionServer HostSpecialPort TaskSpecialPort ";
  const std::string socketKeys =
      "SockType SockPassive SockNodeName SockServiceName SockFamily SockProtocol SockPathName SecureSocketWithKey "
      "SockPathOwner SockPathGroup SockPathMode Bonjour MulticastGroup ";
  const struct {
    const char* key;
    std::vector<std::pair<const char*, Value>> path;
    std::string offers;
  } table[] = {
      {"Sockets", {}, "Socket "},
      {"Sockets", {{"a", Dict{}}}, socketKeys},
      {"Sockets", {{"a", List{}}}, "Socket "},
      {"Sockets", {{"a", List{}}, {"", Dict{}}}, socketKeys},
      {"Sockets", {{"a", List{}}, {"", List{}}, {"", Dict{}}}, socketKeys},
      {"Sockets", {{"a", Dict{}}, {"Odd", Dict{}}}, freeTypes},
      {"MachServices", {}, "Boolean Dictionary "},
      {"MachServices", {{"a", Dict{}}}, serviceKeys},
      {"MachServices", {{"a", Dict{}}, {"ExceptionServer", Dict{}}}, "String "},
      {"LaunchEvents", {}, "Dictionary "},
      {"LaunchEvents", {{"a", Dict{}}}, "Dictionary "},
      {"LaunchEvents", {{"a", Dict{}}, {"b", Dict{}}}, freeTypes},
      {"LaunchEvents", {{"a", Dict{}}, {"b", Dict{}}, {"c", Dict{}}, {"d", Dict{}}}, freeTypes},
  };
  for (const auto& row : table) {
    const BrowserLevel* level = browserSchema(row.key)->top;
    for (const auto& [name, value] : row.path) level = &level->of(itemOf(name, value, *level));
    EXPECT_EQ(titles(*level), row.offers) << row.key << " " << row.path.size();
  }
}

}  // namespace
}  // namespace mirvel
