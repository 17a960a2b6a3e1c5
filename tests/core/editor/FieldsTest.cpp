#include "core/editor/Fields.h"

#include <gmock/gmock.h>

#include "core/locale/Localize.h"
#include "core/propertylist/Writer.h"
#include "core/schedule/NumberText.h"
#include "support/JobText.h"

namespace mirvel {
namespace {

using jobfile::KeepAlive;
using jobfile::Plist;
using propertylist::Dictionary;

constexpr bool option = true;

std::vector<TableRow> rows(std::initializer_list<std::pair<const char*, bool>> entries) {
  std::vector<TableRow> result;
  for (const auto& [text, isOn] : entries) result.push_back({.isOn = isOn, .cells = {text}});
  return result;
}

/// The record of a file with these keys.
Plist recordOf(Dictionary keys) {
  return *Plist::readTolerantly(testdata::jobText("org.job", std::move(keys)));
}

/// The keys of a record, but for its label, in XML without white space and headers.
std::string keysOf(const Plist& plist) {
  const std::string xml = *propertylist::writeXml(plist.encode());
  std::string result;
  for (std::size_t i = xml.find("<dict>") + 6; i < xml.rfind("</dict>"); ++i) {
    if (xml[i] != '\n' && xml[i] != '\t') result += xml[i];
  }
  const std::string label = "<key>Label</key><string>org.job</string>";
  result.erase(result.find(label), label.size());
  return result;
}

TEST(FieldsTest, EachWayToEnterAValueWritesWhatItShould) {
  const Dictionary alive{{"KeepAlive", true}};
  const Dictionary crashing{{"KeepAlive", Dictionary{{"Crashed", true}}}};
  const Dictionary many{
      {"KeepAlive", Dictionary{{"Crashed", true}, {"SuccessfulExit", false}, {"PathState", Dictionary{{"/a", true}}}}}};
  const FieldValue none;
  const struct {
    const char* key;
    Dictionary file;
    FieldValue entered;
    const char* written;
  } table[] = {
      {"Disabled", {{"Disabled", true}}, clicked(fieldOf("Disabled"), true, false), "<key>Disabled</key><false/>"},
      {"Disabled", {{"Disabled", true}}, clicked(fieldOf("Disabled"), true, option), "<key>Disabled</key><false/>"},
      {"Disabled", {{"Disabled", false}}, clicked(fieldOf("Disabled"), false, false), "<key>Disabled</key><true/>"},
      {"Disabled", {{"Disabled", false}}, clicked(fieldOf("Disabled"), false, option), ""},
      {"RunAtLoad", {}, clicked(fieldOf("RunAtLoad"), true, option), "<key>RunAtLoad</key><true/>"},
      {"RunAtLoad", {{"RunAtLoad", true}}, clicked(fieldOf("RunAtLoad"), false, false), "<key>RunAtLoad</key><false/>"},
      {"RunAtLoad", {{"RunAtLoad", true}}, clicked(fieldOf("RunAtLoad"), false, option), ""},
      {"StartOnMount", {}, clicked(fieldOf("StartOnMount"), false, false), "<key>StartOnMount</key><false/>"},
      {"InitGroups", {}, clicked(fieldOf("InitGroups"), false, option), "<key>InitGroups</key><false/>"},
      {"UserName", {}, std::string("ada"), "<key>UserName</key><string>ada</string>"},
      {"UserName", {{"UserName", "ada"}}, none, ""},
      {"GroupName", {{"GroupName", "staff"}}, none, ""},
      {"KeepAlive", {}, true, "<key>KeepAlive</key><true/>"},
      {"KeepAlive", many, true, "<key>KeepAlive</key><true/>"},
      {"KeepAlive", many, clicked(fieldOf("KeepAlive"), false, false), ""},
      {"Crashed", alive, true, "<key>KeepAlive</key><dict><key>Crashed</key><true/></dict>"},
      {"Crashed", alive, false, "<key>KeepAlive</key><dict><key>Crashed</key><false/></dict>"},
      {"Crashed", crashing, none, "<key>KeepAlive</key><dict/>"},
      {"SuccessfulExit", {}, false, "<key>KeepAlive</key><dict><key>SuccessfulExit</key><false/></dict>"},
      {"PathState", alive, rows({{"", true}, {"a", false}}),
       "<key>KeepAlive</key><dict><key>PathState</key><dict><key>a</key><false/></dict></dict>"},
      {"OtherJobEnabled",
       {},
       rows({{"b", true}}),
       "<key>KeepAlive</key><dict><key>OtherJobEnabled</key><dict><key>b</key><true/></dict></dict>"},
      {"PathState", many, rows({{"", true}}),
       "<key>KeepAlive</key><dict><key>Crashed</key><true/><key>SuccessfulExit</key><false/></dict>"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(std::string(row.key) + " " + std::to_string(&row - table));
    Plist plist = recordOf(row.file);
    Unfinished unfinished;
    enter(fieldOf(row.key), row.entered, plist, unfinished);
    EXPECT_EQ(keysOf(plist), row.written);
  }
}

TEST(FieldsTest, AConditionThatComesAndGoesLeavesWhatTheFileHad) {
  const struct {
    Dictionary file;
    const char* written;
  } table[] = {
      {{{"KeepAlive", true}}, "<key>KeepAlive</key><true/>"},
      {{{"KeepAlive", false}}, "<key>KeepAlive</key><false/>"},
      {{{"KeepAlive", Dictionary{{"Crashed", true}}}}, "<key>KeepAlive</key><dict><key>Crashed</key><true/></dict>"}};
  for (const auto& row : table) {
    Plist plist = recordOf(row.file);
    Unfinished unfinished;
    for (const char* typed : {"o", "org.other", ""}) {
      enterRows(fieldOf("OtherJobEnabled"), rows({{typed, true}}), plist, unfinished);
    }
    EXPECT_EQ(keysOf(plist), row.written);
  }
}

TEST(FieldsTest, RowsThatCantBeSavedAreUnfinishedUntilTheyCanOrTheirBoxIsCleared) {
  const Field& paths = fieldOf("PathState");
  const auto twice = rows({{"/a", true}, {"/a", false}});
  Plist plist = recordOf({{"KeepAlive", Dictionary{{"PathState", Dictionary{{"/b", true}}}}}});
  const std::string before = keysOf(plist);
  Unfinished unfinished;
  enterRows(paths, twice, plist, unfinished);
  EXPECT_EQ(keysOf(plist), before);
  EXPECT_EQ(fieldRows(paths, plist, unfinished), twice);
  EXPECT_EQ(fieldRows(fieldOf("OtherJobEnabled"), plist, unfinished), std::vector<TableRow>());
  enterRows(paths, rows({{"/a", false}}), plist, unfinished);
  EXPECT_TRUE(unfinished.isEmpty());
  EXPECT_EQ(fieldRows(paths, plist, unfinished), rows({{"/a", false}}));
  enterRows(paths, twice, plist, unfinished);
  enter(fieldOf("KeepAlive"), false, plist, unfinished);
  EXPECT_TRUE(unfinished.isEmpty());
}

TEST(FieldsTest, ANumberIsWrittenOnlyIfAllOfTheTextIsOne) {
  Field nice = fieldOf("Nice");
  nice.control = Field::Control::Number;
  const Scheduled::NumberText numbers("en");
  const Localize localize("en");
  const struct {
    const char* typed;
    std::optional<std::int64_t> written;
    bool isRefused;
  } table[] = {{"5", 5, false}, {"-20", -20, false}, {"", std::nullopt, false}, {"x", 1, true},
               {"5m", 1, true}, {"1.5", 1, true},    {"1,000", 1000, false},    {"99999999999999999999", 1, true}};
  for (const auto& row : table) {
    SCOPED_TRACE(row.typed);
    Plist plist = recordOf({{"Nice", 1}});
    Unfinished unfinished;
    enterText(nice, row.typed, numbers, plist, unfinished);
    EXPECT_EQ(plist.nice, row.written);
    EXPECT_EQ(refuse(nice, unfinished, localize).has_value(), row.isRefused);
    if (row.isRefused) {
      EXPECT_EQ(fieldText(nice, plist, unfinished), row.typed) << "the text stays";
    }
  }
}

TEST(FieldsTest, AFieldHasAKeyOfItsOwnAndSaysForWhichJobsItIs) {
  for (const Field& field : allFields()) EXPECT_EQ(&fieldOf(field.key), &field) << field.key;
  EXPECT_TRUE(appliesTo(fieldOf("UserName"), Kind::localDaemon));
  EXPECT_FALSE(appliesTo(fieldOf("UserName"), Kind::userAgent));
  EXPECT_TRUE(appliesTo(fieldOf("RunAtLoad"), Kind::userAgent));
}

}  // namespace
}  // namespace mirvel
