#include "core/editor/FieldInput.h"

#include <gmock/gmock.h>

#include <functional>

#include "core/editor/EditTable.h"
#include "core/jobfile/RunString.h"
#include "core/locale/Localize.h"
#include "core/propertylist/Writer.h"
#include "core/schedule/NumberText.h"
#include "support/JobText.h"

namespace mirvel {
namespace {

using jobfile::KeepAlive;
using jobfile::Plist;
using propertylist::Dictionary;
using propertylist::Value;

constexpr bool option = true;

std::vector<TableRow> rows(std::initializer_list<std::pair<const char*, bool>> entries) {
  std::vector<TableRow> result;
  for (const auto& [text, isOn] : entries) result.push_back({.isOn = isOn, .cells = {text}});
  return result;
}

const Scheduled::NumberText& numbers() {
  static const Scheduled::NumberText english("en");
  return english;
}

/// The record of a file with these keys.
Plist recordOf(Dictionary keys) {
  return *Plist::readTolerantly(testdata::jobText("org.job", std::move(keys)));
}

/// The keys of a file, but for its label, in XML without white space and headers.
std::string keysOf(const Dictionary& file) {
  const std::string xml = *propertylist::writeXml(file);
  std::string result;
  for (std::size_t i = xml.find("<dict>") + 6; i < xml.rfind("</dict>"); ++i) {
    if (xml[i] != '\n' && xml[i] != '\t') result += xml[i];
  }
  const std::string label = "<key>Label</key><string>org.job</string>";
  result.erase(result.find(label), label.size());
  return result;
}

std::string keysOf(const Plist& plist) {
  return keysOf(plist.encode());
}

/// The table of a field, from which each change is written at once.
struct OpenTable {
  OpenTable(const char* key, Dictionary file) : field(fieldOf(key)), plist(recordOf(std::move(file))) {
    table.fill(fieldRows(field, plist, unfinished));
  }
  OpenTable(const OpenTable&) = delete;
  OpenTable& operator=(const OpenTable&) = delete;

  const Field& field;
  Plist plist;
  Unfinished unfinished = {};
  EditTable table{field.table, numbers(), [this](Editing::Step, const std::string&) {
                    enterRows(field, table.rows(), numbers(), plist, unfinished);
                  }};
};

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
      {"Crashed", alive, none, "<key>KeepAlive</key><true/>"},
      {"NetworkState", alive, false, "<key>KeepAlive</key><dict><key>NetworkState</key><false/></dict>"},
      {"AfterInitialDemand", crashing, true,
       "<key>KeepAlive</key><dict><key>AfterInitialDemand</key><true/><key>Crashed</key><true/></dict>"},
      {"AfterInitialDemand",
       {{"KeepAlive", Dictionary{{"Crashed", true}, {"AfterInitialDemand", true}}}},
       clicked(fieldOf("AfterInitialDemand"), false, option),
       "<key>KeepAlive</key><dict><key>Crashed</key><true/></dict>"},
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
    if (const auto* const entered = std::get_if<std::vector<TableRow>>(&row.entered)) {
      enterRows(fieldOf(row.key), *entered, numbers(), plist, unfinished);
    } else {
      enter(fieldOf(row.key), row.entered, plist, unfinished);
    }
    EXPECT_EQ(keysOf(plist), row.written);
  }
}

TEST(FieldsTest, EditsOfTablesChangeTheirRowsOnly) {
  using Table = EditTable;
  using propertylist::Array;
  const auto add = [](const char* text) { return [text](Table& table) { table.add(text); }; };
  const auto remove = [](std::size_t row) { return [row](Table& table) { table.remove(row); }; };
  const auto type = [](std::size_t row, std::size_t column, const char* text) {
    return [=](Table& table) { table.setCell(row, column, text); };
  };
  const Dictionary blankPath{{"WatchPaths", Array{"/x", ""}}};
  const Dictionary named{{"EnvironmentVariables", Dictionary{{"", "x"}, {"A", "1"}}}};
  const Dictionary mixed{{"EnvironmentVariables", Dictionary{{"A", "1"}, {"N", 5}}}};
  const Dictionary limit{{"SoftResourceLimits", Dictionary{{"CPU", 5.0}, {"Odd", 1}}}};
  const Dictionary text{{"LimitLoadToSessionType", "Aqua"}};
  const Dictionary array{{"LimitLoadToSessionType", Array{"Aqua"}}};
  const Dictionary models{
      {"LimitLoadToHardware", Dictionary{{"machine", Array{"C"}}, {"model", Array{"A", "B"}}, {"none", Array{}}}}};
  const struct {
    const char* key;
    Dictionary file;
    std::vector<std::function<void(Table&)>> steps;
    const char* saved;
  } rows[] = {
      {"WatchPaths", blankPath, {type(0, 0, "/y")}, "<array><string>/y</string><string></string></array>"},
      {"WatchPaths", blankPath, {type(0, 0, "")}, "<array><string></string></array>"},
      {"WatchPaths",
       blankPath,
       {type(1, 0, "a"), type(1, 0, "")},
       "<array><string>/x</string><string></string></array>"},
      {"WatchPaths", blankPath, {remove(1), add("")}, "<array><string>/x</string></array>"},
      {"WatchPaths", blankPath, {remove(0), remove(0)}, nullptr},
      {"WatchPaths", {}, {add("/a"), add("/a")}, "<array><string>/a</string><string>/a</string></array>"},
      {"WatchPaths", {}, {add("/a"), remove(0)}, nullptr},
      {"WatchPaths", {{"WatchPaths", Array{}}}, {add("/a"), remove(0)}, "<array/>"},
      {"QueueDirectories", {}, {add(""), type(0, 0, "/q")}, "<array><string>/q</string></array>"},
      {"EnvironmentVariables",
       named,
       {type(1, 1, "2")},
       "<dict><key></key><string>x</string><key>A</key><string>2</string></dict>"},
      {"EnvironmentVariables",
       named,
       {add("A")},
       "<dict><key></key><string>x</string><key>A</key><string>1</string></dict>"},
      {"EnvironmentVariables", named, {remove(0), type(0, 1, "")}, "<dict><key>A</key><string></string></dict>"},
      {"EnvironmentVariables", mixed, {remove(0)}, "<dict><key>N</key><integer>5</integer></dict>"},
      {"EnvironmentVariables", {{"EnvironmentVariables", Dictionary{}}}, {add("A"), remove(0)}, "<dict/>"},
      {"SoftResourceLimits",
       limit,
       {add("Core")},
       "<dict><key>CPU</key><real>5</real><key>Odd</key><integer>1</integer></dict>"},
      {"SoftResourceLimits",
       limit,
       {add("Core"), type(1, 1, "0"), type(1, 1, "0x")},
       "<dict><key>CPU</key><real>5</real><key>Core</key><integer>0</integer><key>Odd</key><integer>1</integer></"
       "dict>"},
      {"SoftResourceLimits",
       limit,
       {type(0, 1, "1,000")},
       "<dict><key>CPU</key><integer>1000</integer><key>Odd</key><integer>1</integer></dict>"},
      {"SoftResourceLimits", limit, {type(0, 1, "")}, "<dict><key>Odd</key><integer>1</integer></dict>"},
      {"HardResourceLimits", {}, {add("CPU"), type(0, 1, "-1")}, "<dict><key>CPU</key><integer>-1</integer></dict>"},
      {"HardResourceLimits", {}, {add("CPU"), type(0, 1, "7"), type(0, 1, "")}, nullptr},
      {"LimitLoadToSessionType", text, {remove(0), add("Background")}, "<string>Background</string>"},
      {"LimitLoadToSessionType", text, {add("Odd")}, "<array><string>Aqua</string><string>Odd</string></array>"},
      {"LimitLoadToSessionType", array, {remove(0), add("Background")}, "<array><string>Background</string></array>"},
      {"LimitLoadToSessionType", array, {remove(0)}, nullptr},
      {"LimitLoadToHardware",
       models,
       {type(2, 1, "D")},
       "<dict><key>machine</key><array><string>C</string></array>"
       "<key>model</key><array><string>A</string><string>D</string></array><key>none</key><array/></dict>"},
      {"LimitLoadToHardware",
       models,
       {remove(0), remove(0), remove(0), add("")},
       "<dict><key>none</key><array/></dict>"},
      {"LimitLoadToHardware", models, {remove(0), remove(0), remove(0), remove(0)}, nullptr},
      {"LimitLoadToHardware",
       {},
       {add(""), type(0, 1, "A"), add(""), type(1, 1, "B")},
       "<dict><key>model</key><array><string>A</string><string>B</string></array></dict>"},
      {"LimitLoadToHardware",
       {{"LimitLoadToHardware", Dictionary{{"model", Array{""}}}}},
       {add(""), type(1, 1, "B")},
       "<dict><key>model</key><array><string></string><string>B</string></array></dict>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.key) + " " + std::to_string(&row - rows));
    OpenTable open(row.key, row.file);
    for (const auto& step : row.steps) step(open.table);
    const std::string key = "<key>" + std::string(row.key) + "</key>";
    EXPECT_EQ(keysOf(open.plist.encodeAll()), row.saved ? key + row.saved : "");
  }
}

TEST(FieldsTest, AnEditOfATableThatCantBeSavedLeavesAllOfItsRowsAsTheyWere) {
  const Localize localize("en");
  OpenTable open("HardResourceLimits", {{"HardResourceLimits", Dictionary{{"CPU", 5}, {"Stack", 6}}}});
  const std::string before = keysOf(open.plist);
  open.table.setCell(0, 1, "5m");
  open.table.setCell(1, 1, "7");
  EXPECT_EQ(keysOf(open.plist), before);
  EXPECT_EQ(open.table.refuse("HardResourceLimits", localize)->reason, "The value of “CPU” isn’t a whole number");
  EXPECT_EQ(fieldRows(open.field, open.plist, open.unfinished), open.table.rows());
  open.table.setCell(0, 1, "8");
  EXPECT_EQ(open.plist.hardResourceLimits->cpu, 8);
  EXPECT_EQ(open.plist.hardResourceLimits->stack, 7);
  EXPECT_TRUE(open.unfinished.isEmpty());
}

TEST(FieldsTest, AMaskIsTypedInOctalAndKeepsTheFormOfTheFile) {
  const Field& umask = fieldOf("Umask");
  const Localize localize("en");
  const Dictionary text{{"Umask", "022"}};
  const struct {
    Dictionary file;
    std::vector<const char*> typed;
    const char* saved;
    const char* shown;
    std::int64_t boxes;
  } table[] = {
      {{}, {}, nullptr, "", 022},
      {{}, {"077"}, "<integer>63</integer>", "077", 077},
      {{}, {"0"}, "<integer>0</integer>", "000", 0},
      {{}, {"7022"}, "<integer>3602</integer>", "7022", 07022},
      {{}, {"8"}, nullptr, "8", 022},
      {{}, {"-1"}, nullptr, "-1", 022},
      {text, {}, "<string>022</string>", "022", 022},
      {text, {"0", "22"}, "<string>022</string>", "022", 022},
      {text, {"0"}, "<integer>0</integer>", "000", 0},
      {text, {"0", "x"}, "<integer>0</integer>", "x", 0},
      {text, {""}, nullptr, "", 022},
      {{{"Umask", "none"}}, {}, "<string>none</string>", "", 022},
      {{{"Umask", "none"}}, {"077"}, "<integer>63</integer>", "077", 077},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(&row - table);
    Plist plist = recordOf(row.file);
    Unfinished unfinished;
    for (const char* typed : row.typed) enterText(umask, typed, numbers(), plist, unfinished);
    EXPECT_EQ(keysOf(plist.encodeAll()), row.saved ? std::string("<key>Umask</key>") + row.saved : "");
    EXPECT_EQ(fieldText(umask, plist, unfinished), row.shown);
    EXPECT_EQ(shownMask(umask, plist), row.boxes);
  }
  Unfinished unfinished;
  Plist plist;
  enterText(umask, "9", numbers(), plist, unfinished);
  EXPECT_EQ(refuse(umask, unfinished, localize)->reason, "Enter an octal number, such as 022.");
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
      enterRows(fieldOf("OtherJobEnabled"), rows({{typed, true}}), numbers(), plist, unfinished);
    }
    EXPECT_EQ(keysOf(plist), row.written);
  }
}

TEST(FieldsTest, AConditionBesideOnDemandIsWrittenAndKeepsItsNeighbours) {
  const auto save = [](const Plist& plist) { return keysOf(jobfile::fileAsEdited(plist)); };
  const Dictionary file{{"KeepAlive", Dictionary{{"Crashed", true}, {"Odd", 1}}}, {"OnDemand", false}};
  const std::string onDemand = "<key>OnDemand</key><false/>";
  const struct {
    const char* key;
    FieldValue value;
    const char* written;
  } table[] = {
      {"Nice", std::int64_t{5},
       "<key>KeepAlive</key><dict><key>Crashed</key><true/><key>Odd</key><integer>1</integer></dict>"
       "<key>Nice</key><integer>5</integer>"},
      {"SuccessfulExit", true,
       "<key>KeepAlive</key><dict><key>Crashed</key><true/><key>Odd</key><integer>1</integer>"
       "<key>SuccessfulExit</key><true/></dict>"},
      {"Crashed", {}, "<key>KeepAlive</key><dict><key>Odd</key><integer>1</integer></dict>"},
      {"KeepAlive", false, ""},
  };
  for (const auto& row : table) {
    Plist plist = recordOf(file);
    Unfinished unfinished;
    enter(fieldOf(row.key), row.value, plist, unfinished);
    EXPECT_EQ(save(plist), row.written + onDemand) << row.key;
  }
}

TEST(FieldsTest, UnknownConditionsStayWhileTheirKeyDoesAndNoLonger) {
  const Dictionary conditions{{"Crashed", true}, {"Own", 5}};
  const Dictionary overridden{{"KeepAlive", conditions}, {"OnDemand", false}};
  Unfinished unfinished;
  Plist plist = recordOf(overridden);
  enter(fieldOf("Crashed"), false, plist, unfinished);
  EXPECT_EQ(*plist.encodeAll().find("KeepAlive"), Value(Dictionary{{"Crashed", false}, {"Own", 5}}));
  enter(fieldOf("Crashed"), {}, plist, unfinished);
  EXPECT_EQ(*plist.encodeAll().find("KeepAlive"), Value(Dictionary{{"Own", 5}}));
  enter(fieldOf("KeepAlive"), false, plist, unfinished);
  enter(fieldOf("KeepAlive"), true, plist, unfinished);
  enter(fieldOf("Crashed"), true, plist, unfinished);
  EXPECT_EQ(*plist.encodeAll().find("KeepAlive"), Value(Dictionary{{"Crashed", true}}));

  plist = recordOf({{"EnvironmentVariables", Dictionary{{"A", "1"}, {"B", 5}}}});
  enter(fieldOf("EnvironmentVariables"), {}, plist, unfinished);
  enter(fieldOf("EnvironmentVariables"), std::vector<TableRow>{{.cells = {"C", "3"}}}, plist, unfinished);
  EXPECT_EQ(*plist.encodeAll().find("EnvironmentVariables"), Value(Dictionary{{"C", "3"}}));
}

TEST(FieldsTest, RowsThatCantBeSavedAreUnfinishedUntilTheyCanOrTheirBoxIsCleared) {
  const Field& paths = fieldOf("PathState");
  const auto twice = rows({{"/a", true}, {"/a", false}});
  Plist plist = recordOf({{"KeepAlive", Dictionary{{"PathState", Dictionary{{"/b", true}}}}}});
  const std::string before = keysOf(plist);
  Unfinished unfinished;
  enterRows(paths, twice, numbers(), plist, unfinished);
  EXPECT_EQ(keysOf(plist), before);
  EXPECT_EQ(fieldRows(paths, plist, unfinished), twice);
  EXPECT_EQ(fieldRows(fieldOf("OtherJobEnabled"), plist, unfinished), std::vector<TableRow>());
  enterRows(paths, rows({{"/a", false}}), numbers(), plist, unfinished);
  EXPECT_TRUE(unfinished.isEmpty());
  EXPECT_EQ(fieldRows(paths, plist, unfinished), rows({{"/a", false}}));
  enterRows(paths, twice, numbers(), plist, unfinished);
  enter(fieldOf("KeepAlive"), false, plist, unfinished);
  EXPECT_TRUE(unfinished.isEmpty());
}

TEST(FieldsTest, ANumberIsWrittenOnlyIfAllOfTheTextIsOne) {
  const Field& nice = fieldOf("Nice");
  const Localize localize("en");
  const struct {
    const char* typed;
    std::optional<std::int64_t> written;
    bool isRefused;
  } table[] = {{"5", 5, false},  {"-20", -20, false}, {"", std::nullopt, false}, {"x", 1, true},
               {"5m", 1, true},  {"1.5", 1, true},    {"1,000", 1000, false},    {"99999999999999999999", 1, true},
               {"1,2", 1, true}, {"0", 0, false}};
  for (const auto& row : table) {
    SCOPED_TRACE(row.typed);
    Plist plist = recordOf({{"Nice", 1}});
    Unfinished unfinished;
    enterText(nice, row.typed, numbers(), plist, unfinished);
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
