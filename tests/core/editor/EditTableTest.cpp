#include "core/editor/EditTable.h"

#include <gtest/gtest.h>

#include <functional>

#include "core/locale/Collator.h"
#include "core/locale/Localize.h"
#include "core/schedule/NumberText.h"

namespace mirvel {
namespace {

using Texts = std::vector<std::string>;
using Step = Editing::Step;

constexpr TableFormat::Text title = [](const Localize& localize) { return localize.name(); };
constexpr TableFormat::Column oneColumn[] = {{}};
constexpr TableFormat::Column variableColumns[] = {{.title = title, .forbidden = "="}, {.title = title}};
constexpr TableFormat::Column limitColumns[] = {{.isEditable = false}, {.isNumber = true}};
constexpr TableFormat::Column hardwareColumns[] = {{.isRequired = true, .initial = "model"}, {.isRequired = true}};
constexpr TableFormat::MenuItem menu[] = {{"Aqua", "windows"}, {"Background", "none"}};
constexpr TableFormat list{.columns = oneColumn};
constexpr TableFormat boxes{.columns = oneColumn, .hasBox = true, .isDictionary = true};
constexpr TableFormat variables{.columns = variableColumns, .isDictionary = true, .hasVariables = true};
constexpr TableFormat limits{.columns = limitColumns, .isDictionary = true, .adding = TableFormat::Adding::Menu};
constexpr TableFormat hardware{.columns = hardwareColumns, .isDictionary = true, .hasLists = true};

const Scheduled::NumberText& tableNumbers() {
  static const Scheduled::NumberText english("en");
  return english;
}

/// Rows as "a+", "b-" by their boxes and "name=value" of two columns, in the order on the screen.
std::string shown(const EditTable& table) {
  std::string text;
  for (std::size_t i = 0; i < table.order().size(); ++i) {
    const TableRow& row = table.shownRow(i);
    if (i > 0) text += ' ';
    text += row.cells.front();
    if (row.cells.size() > 1) text += "=" + row.cells[1];
    if (table.format().hasBox) text += row.isOn ? '+' : '-';
  }
  return text;
}

TEST(EditTableTest, EachChangeIsReportedOnceWithItsStep) {
  Texts reported;
  EditTable table(boxes, tableNumbers(), [&](Step step, const std::string& cell) {
    reported.push_back(step == Step::Begins ? "begins" : "continues " + cell);
  });
  table.fill({{false, {"a"}}});
  EXPECT_EQ(reported, Texts()) << "filling is no edit";
  const struct {
    const char* name;
    std::function<void()> change;
    Texts reported;
    const char* rows;
  } steps[] = {
      {"an empty row", [&] { EXPECT_EQ(table.add(""), 1U); }, {}, "a- +"},
      {"its box", [&] { table.setBox(1, false); }, {}, "a- -"},
      {"its box again", [&] { table.setBox(1, true); }, {}, "a- +"},
      {"its text", [&] { table.setCell(1, 0, "b"); }, {"continues 1.0"}, "a- b+"},
      {"the same text", [&] { table.setCell(1, 0, "b"); }, {}, "a- b+"},
      {"a row beyond the last", [&] { table.setCell(2, 0, "c"); }, {}, "a- b+"},
      {"a column beyond the last", [&] { table.setCell(0, 1, "c"); }, {}, "a- b+"},
      {"a box", [&] { table.setBox(0, true); }, {"begins"}, "a+ b+"},
      {"the same box", [&] { table.setBox(0, true); }, {}, "a+ b+"},
      {"a box beyond the last", [&] { table.setBox(2, true); }, {}, "a+ b+"},
      {"no row to delete", [&] { EXPECT_FALSE(table.remove(2)); }, {}, "a+ b+"},
      {"the first goes", [&] { EXPECT_TRUE(table.remove(0)); }, {"begins"}, "b+"},
      {"the last goes", [&] { EXPECT_TRUE(table.remove(0)); }, {"begins"}, ""},
      {"a row with a text", [&] { EXPECT_EQ(table.add("c"), 0U); }, {"begins"}, "c+"},
  };
  for (const auto& step : steps) {
    reported.clear();
    step.change();
    EXPECT_EQ(reported, step.reported) << step.name;
    EXPECT_EQ(shown(table), step.rows) << step.name;
  }
}

TEST(EditTableTest, RefillingKeepsRowsThatAreStillToBeFilled) {
  EditTable table(list, tableNumbers());
  table.fill(rowsOf(Texts{"b", "a"}));
  table.add("");
  table.fill(rowsOf(Texts{"b", "a"}));
  EXPECT_EQ(shown(table), "b a ");
  table.fill(rowsOf(Texts{"c"}));
  EXPECT_EQ(shown(table), "c ");
  // As undo and redo do, if unfinished rows include an empty one.
  for (int i = 0; i < 3; ++i) {
    table.fill({{.cells = {"a"}}, {.cells = {"a"}}, {.cells = {""}}});
    EXPECT_EQ(shown(table), "a a ");
    table.fill(rowsOf(Texts{"a", "b"}));
    EXPECT_EQ(shown(table), "a b ");
  }
}

TEST(EditTableTest, ManyOtherRowsAreFilledInLinearTime) {
  constexpr int count = 200'000;
  Texts before;
  Texts after;
  for (int i = 0; i < count; ++i) {
    before.push_back("a" + std::to_string(i));
    after.push_back("b" + std::to_string(i));
  }
  after[count / 2] = before[7];
  EditTable table(list, tableNumbers());
  table.fill(rowsOf(before));
  const EditTable::Id kept = table.id(7);
  const EditTable::Id changed = table.id(9);
  table.fill(rowsOf(after));
  EXPECT_EQ(table.id(count / 2), kept) << "the same text";
  EXPECT_EQ(table.id(9), changed) << "another text in its place";
}

TEST(EditTableTest, SortingChangesTheScreenAndNotTheRows) {
  const Collator collator("en");
  int edits = 0;
  EditTable table(variables, tableNumbers(), [&](Step, const std::string&) { ++edits; });
  const auto rows = rowsOf(jobfile::StringMap<std::string>{{"b", "job 10"}, {"B2", "job 9"}, {"a", "x"}});
  table.fill(rows);
  ASSERT_TRUE(table.isSortable());
  table.sort(0, true, collator);
  EXPECT_EQ(shown(table), "a=x b=job 10 B2=job 9") << "as people sort, not by bytes";
  table.sort(1, false, collator);
  EXPECT_EQ(shown(table), "a=x b=job 10 B2=job 9") << "numbers by their value";
  table.sort(1, true, collator);
  EXPECT_EQ(shown(table), "B2=job 9 b=job 10 a=x");
  EXPECT_EQ(table.rows(), rows);
  EXPECT_EQ(edits, 0);

  table.setCell(0, 1, "changed");
  EXPECT_EQ(table.rows()[0], (TableRow{false, {"B2", "changed"}})) << "an edit reaches the row that is shown there";
  EXPECT_TRUE(table.remove(1));
  EXPECT_EQ(shown(table), "B2=changed a=x");
  table.add("new");
  EXPECT_EQ(shown(table), "B2=changed a=x new=");
  table.add("");
  table.fill(rows);
  EXPECT_EQ(shown(table), "B2=job 9 b=job 10 a=x =") << "as after undo";
}

TEST(EditTableTest, AMenuOffersEachRowOnce) {
  EditTable table({.columns = oneColumn, .adding = TableFormat::Adding::Menu, .menu = menu}, tableNumbers());
  table.fill(rowsOf(Texts{"Background", "Odd"}));
  const auto offered = [&] {
    Texts result;
    for (const auto& offer : table.offers()) {
      if (offer.isEnabled) result.emplace_back(offer.item.title);
    }
    return result;
  };
  EXPECT_EQ(offered(), Texts{"Aqua"});
  table.add("Aqua");
  EXPECT_EQ(offered(), Texts());
  table.remove(0);
  EXPECT_EQ(offered(), Texts{"Background"});
}

TEST(EditTableTest, RefillingFollowsEachRowByItsText) {
  EditTable table(variables, tableNumbers());
  table.fill(rowsOf(jobfile::StringMap<std::string>{{"a", "1"}, {"b", "2"}, {"c", "3"}}));
  table.add("0");
  table.setCell(3, 1, "new");
  const EditTable::Id b = table.id(1);
  const EditTable::Id c = table.id(2);
  EXPECT_FALSE(table.fill(rowsOf(jobfile::StringMap<std::string>{{"0", "new"}, {"a", "1"}, {"b", "2"}, {"c", "3"}})));
  EXPECT_EQ(shown(table), "a=1 b=2 c=3 0=new") << "a dictionary has no order";
  EXPECT_TRUE(table.fill(rowsOf(jobfile::StringMap<std::string>{{"b", "2"}, {"c", "4"}})));
  EXPECT_EQ(shown(table), "b=2 c=4");
  EXPECT_EQ(table.id(0), b);
  EXPECT_NE(table.id(1), b);
  EXPECT_NE(table.id(1), c) << "at another index with another text, it is another row";
  const EditTable::Id second = table.id(1);
  table.fill(rowsOf(jobfile::StringMap<std::string>{{"b", "2"}, {"d", "4"}}));
  EXPECT_EQ(table.id(1), second) << "as after undo of its text";
}

TEST(EditTableTest, RowsThatCantBeSavedAreRefusedIfTheyWereEnteredHere) {
  const Localize localize("en");
  struct Step {
    std::size_t position;
    std::size_t column;
    const char* text;
  };
  const struct {
    TableFormat format;
    Texts file;  ///< "name=value" or a list
    std::vector<Step> steps;
    const char* reason;
  } table[] = {
      {boxes, {"a", "b"}, {{2, 0, "A"}}, nullptr},
      {boxes, {"a", ""}, {{0, 0, "b"}}, nullptr},
      {boxes, {"/a", "/b"}, {{2, 0, "/b"}}, "More than one row is called “/b”"},
      {boxes, {"/a", "/b"}, {{0, 0, "/b"}}, "More than one row is called “/b”"},
      {boxes, {"/a", "/b"}, {{0, 0, "/b"}, {0, 0, "/a"}}, nullptr},
      {list, {"/a"}, {{1, 0, "/a"}}, nullptr},
      {variables, {"=x", "a=1"}, {{1, 1, "2"}}, nullptr},
      {variables, {"=x"}, {{0, 1, "y"}}, nullptr},
      {variables, {"a=1"}, {{0, 0, ""}}, "A row has no name"},
      {variables, {"a=1"}, {{0, 1, ""}}, nullptr},
      {variables, {}, {{0, 1, "1"}}, "A row has no name"},
      {variables, {}, {{0, 0, "A=B"}}, "The name “A=B” contains “=”"},
      {limits, {"CPU=5"}, {{0, 1, "1,000"}}, nullptr},
      {limits, {"CPU=5"}, {{0, 1, ""}}, nullptr},
      {limits, {"CPU=5"}, {{0, 1, "5m"}}, "The value of “CPU” isn’t a whole number"},
      {hardware, {"model=A"}, {{1, 1, "A"}}, nullptr},
      {hardware, {"model="}, {{1, 1, "A"}}, nullptr},
      {hardware, {"model=A"}, {{1, 0, "machine"}}, "“machine” has no value"},
      {hardware, {"model=A"}, {{1, 0, ""}, {1, 1, "A"}}, "A row has no name"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(&row - table);
    EditTable itsTable(row.format, tableNumbers());
    std::vector<TableRow> rows;
    for (const std::string& text : row.file) {
      const std::size_t equals = text.find('=');
      Texts cells{text.substr(0, equals)};
      if (equals != std::string::npos) cells.push_back(text.substr(equals + 1));
      rows.push_back({.cells = cells, .recorded = cells});
    }
    itsTable.fill(rows);
    EXPECT_EQ(itsTable.refuse("Key", localize), std::nullopt) << "as in the file";
    for (const Step& step : row.steps) {
      if (step.position == itsTable.order().size()) itsTable.add("");
      itsTable.setCell(step.position, step.column, step.text);
    }
    const auto refusal = itsTable.refuse("Key", localize);
    EXPECT_EQ(refusal ? refusal->reason : "", row.reason ? row.reason : "");
    EXPECT_EQ(refusal.has_value(), itsTable.refusedCell().has_value());
    if (!refusal) continue;
    EXPECT_EQ(refusal->message, "“Key” can’t be saved");
    EXPECT_EQ(itsTable.refusedCell()->position, row.steps.front().position) << "the row in which it was entered";
  }
}

TEST(EditTableTest, OnlyRowsThatWereAddedOrEmptiedHereAreBlank) {
  const struct {
    TableFormat format;
    TableRow row;
    bool isBlank;
  } table[] = {
      {list, {.cells = {""}}, true},
      {list, {.cells = {""}, .recorded = {""}}, false},
      {list, {.cells = {""}, .recorded = {"a"}}, true},
      {list, {.cells = {"a"}}, false},
      {boxes, {.isOn = true, .cells = {""}}, true},
      {variables, {.cells = {"", ""}}, true},
      {variables, {.cells = {"A", ""}}, false},
      {variables, {.cells = {"", "1"}}, false},
      {variables, {.cells = {"", ""}, .recorded = {"", ""}}, false},
      {limits, {.cells = {"CPU", ""}}, true},
      {limits, {.cells = {"CPU", "0"}}, false},
      {limits, {.cells = {"CPU", ""}, .recorded = {"CPU", "5"}}, true},
      {hardware, {.cells = {"model", ""}}, true},
      {hardware, {.cells = {"model", ""}, .recorded = {"model", ""}}, false},
      {hardware, {.cells = {"machine", ""}}, false},
  };
  for (const auto& row : table) EXPECT_EQ(isBlank(row.format, row.row), row.isBlank) << &row - table;
}

TEST(EditTableTest, VariablesArePastedOverThoseOfTheSameName) {
  int edits = 0;
  EditTable table(variables, tableNumbers(), [&](Step, const std::string&) { ++edits; });
  table.fill(rowsOf(jobfile::StringMap<std::string>{{"A", "1"}, {"B", "2"}}));
  ASSERT_TRUE(table.paste("export C='3 4'\n# none\nA=\n"));
  EXPECT_EQ(shown(table), "A= B=2 C=3 4");
  EXPECT_EQ(edits, 1);
  const auto refused = table.paste("D=1\nE F=1");
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().line, 2U);
  EXPECT_EQ(shown(table), "A= B=2 C=3 4") << "all or nothing";
  EXPECT_EQ(edits, 1);
  const char* const copies[] = {"A=", "B=2", "C=\"3 4\""};
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(table.copied(i), copies[i]);
  EditTable paths(list, tableNumbers());
  paths.fill(rowsOf(Texts{"/a b"}));
  EXPECT_EQ(paths.copied(0), "/a b");
  EXPECT_EQ(paths.paste("A=1").error().code, Error::Code::BadArgument);
}

TEST(EditTableTest, TheValuesOfSecretsAreKnownByTheirNames) {
  EditTable table(variables, tableNumbers());
  table.fill(rowsOf(jobfile::StringMap<std::string>{{"API_KEY", ""}, {"HOME", "/h"}, {"TOKEN", "x"}}));
  EXPECT_FALSE(table.isSecret(0, 1)) << "nothing to conceal";
  EXPECT_FALSE(table.isSecret(1, 1));
  EXPECT_TRUE(table.isSecret(2, 1));
  EXPECT_FALSE(table.isSecret(2, 0));
}

}  // namespace
}  // namespace mirvel
