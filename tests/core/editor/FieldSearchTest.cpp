#include "core/editor/FieldSearch.h"

#include <gtest/gtest.h>

#include "core/locale/Localize.h"
#include "support/JobText.h"

namespace mirvel {
namespace {

using jobfile::Plist;
using propertylist::Array;
using propertylist::Dictionary;

TEST(FieldSearchTest, EachWordIsPartOfTheKeyTheTitleOrTheKeywords) {
  const Localize localize("en");
  Field output = fieldOf("StandardOutPath");
  output.keywords = "log output";
  Field enabled = fieldOf("Disabled");
  const struct {
    const char* query;
    bool isOutput;
    bool isEnabled;
  } table[] = {
      {"", true, true},
      {"  ", true, true},
      {"log", true, false},
      {"LOG std", false, false},
      {"out log", true, false},
      {"standardoutpath", true, false},
      {"Päth", true, false},
      {"disabled", false, true},
      {"enabled", false, true},
      {"enabled log", false, false},
      {"outpath standard", true, false},
      {"writes to the", false, false},  // of the help
  };
  for (const auto& row : table) {
    const FieldSearch search(row.query, localize);
    EXPECT_EQ(search.matches(output), row.isOutput) << row.query;
    EXPECT_EQ(search.matches(enabled), row.isEnabled) << row.query;
  }
}

TEST(FieldSearchTest, ASectionIsFoundByAnyOfItsControls) {
  const Localize localize("en");
  const struct {
    const char* query;
    StackSection section;
    bool isFound;
  } table[] = {
      {"command", StackSection::General, true},
      {"weekday", StackSection::When, true},
      {"pathstate", StackSection::When, true},
      {"nice", StackSection::Limits, true},
      {"nice", StackSection::When, false},
      {"umask", StackSection::Miscellaneous, true},
      {"umask", StackSection::LaunchEvents, false},
      {"bonjour", StackSection::Sockets, true},
      {"bonjour", StackSection::MachServices, false},
      {"rootdirectory", StackSection::Deprecated, false},
      {"exit nothing", StackSection::Miscellaneous, false},
  };
  for (const auto& row : table) {
    EXPECT_EQ(FieldSearch(row.query, localize).matchesAnyOf(row.section), row.isFound) << row.query;
  }
}

TEST(FieldSearchTest, EditsAreFoundBySection) {
  const auto read = Plist::readTolerantly(testdata::jobText(
      "a", {{"Program", "/bin/ls"}, {"StartInterval", 60}, {"UserName", "ada"}, {"Sockets", Dictionary()}}));
  ASSERT_TRUE(read);
  const struct {
    StackSection section;
    void (*edit)(Plist& plist, Unfinished& unfinished);
  } table[] = {
      {StackSection::General, [](Plist& plist, Unfinished&) { plist.run = "/bin/cat"; }},
      {StackSection::General, [](Plist& plist, Unfinished&) { plist.disabled = false; }},
      {StackSection::When, [](Plist& plist, Unfinished&) { plist.startInterval.reset(); }},
      {StackSection::When, [](Plist&, Unfinished& unfinished) { unfinished.tables["PathState"] = {}; }},
      {StackSection::When, [](Plist&, Unfinished& unfinished) { unfinished.rules.emplace_back(); }},
      {StackSection::Root, [](Plist& plist, Unfinished&) { plist.userName = ""; }},
      {StackSection::LaunchEvents, [](Plist&, Unfinished& unfinished) { unfinished.trees["LaunchEvents"] = {}; }},
      {StackSection::Sockets, [](Plist& plist, Unfinished&) { plist.sockets.reset(); }},
      {StackSection::Sockets,
       [](Plist& plist, Unfinished&) {
         EXPECT_TRUE(plist.replaceTree(Plist::CodingKeys::Sockets, Dictionary{{"odd", 1}}));
       }},
      {StackSection::MachServices, [](Plist&, Unfinished& unfinished) { unfinished.trees["MachServices"] = {}; }},
  };
  for (const auto& row : table) {
    Plist edited = read->clone();
    Unfinished unfinished;
    EXPECT_FALSE(isEdited(row.section, edited, *read, unfinished));
    row.edit(edited, unfinished);
    for (int i = 0; i <= static_cast<int>(StackSection::Notes); ++i) {
      const auto section = static_cast<StackSection>(i);
      EXPECT_EQ(isEdited(section, edited, *read, unfinished), section == row.section) << i;
    }
  }
}

}  // namespace
}  // namespace mirvel
