#include "core/editor/EditTable.h"

#include <gtest/gtest.h>

#include <functional>

#include "core/locale/Collator.h"
#include "core/locale/Localize.h"

namespace mirvel {
namespace {

using Texts = std::vector<std::string>;
using Step = Editing::Step;

constexpr TableFormat::Column oneColumn[] = {{}};
constexpr TableFormat::Column twoColumns[] = {{.title = "Name"}, {.title = "Value"}};
constexpr TableFormat::MenuItem menu[] = {{"Aqua", "windows"}, {"Background", "none"}};
constexpr TableFormat list{.columns = oneColumn};
constexpr TableFormat boxes{.columns = oneColumn, .hasBox = true, .isDictionary = true};
constexpr TableFormat variables{.columns = twoColumns, .isDictionary = true};

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
  EditTable table(boxes, [&](Step step, const std::string& cell) {
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
  EditTable table(list);
  table.fill(rowsOf(Texts{"b", "a"}));
  table.add("");
  table.fill(rowsOf(Texts{"b", "a"}));
  EXPECT_EQ(shown(table), "b a ");
  table.fill(rowsOf(Texts{"c"}));
  EXPECT_EQ(shown(table), "c ");
  // As undo and redo do, if unfinished rows include an empty one.
  for (int i = 0; i < 3; ++i) {
    table.fill(rowsOf(Texts{"a", "a", ""}));
    EXPECT_EQ(shown(table), "a a ");
    table.fill(rowsOf(Texts{"a", "b"}));
    EXPECT_EQ(shown(table), "a b ");
  }
}

TEST(EditTableTest, SortingChangesTheScreenAndNotTheRows) {
  const Collator collator("en");
  int edits = 0;
  EditTable table(variables, [&](Step, const std::string&) { ++edits; });
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
  EditTable table({.columns = oneColumn, .adding = TableFormat::Adding::Menu, .menu = menu});
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

TEST(EditTableTest, RowsThatADictionaryWouldLoseAreRefused) {
  const Localize localize("en");
  const struct {
    TableFormat format;
    std::vector<TableRow> rows;
    std::optional<std::string> reason;
  } table[] = {
      {boxes, {{true, {"a"}}, {true, {"b"}}, {false, {"A"}}}, {}},
      {boxes, {{true, {""}}, {true, {"a"}}, {true, {""}}}, {}},
      {boxes, {{true, {"/a"}}, {true, {"/b"}}, {false, {"/b"}}}, "More than one row is called “/b”"},
      {variables, {{false, {"a", "1"}}, {false, {"", "2"}}}, "A row has no name"},
      {variables, {{false, {"a", ""}}, {false, {"", ""}}}, {}},
      {list, {{false, {"/a"}}, {false, {"/a"}}}, {}},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(&row - table);
    EditTable itsTable(row.format);
    itsTable.fill(row.rows);
    const auto refusal = itsTable.refuse("PathState", localize);
    EXPECT_EQ(refusal ? std::optional(refusal->reason) : std::nullopt, row.reason);
    EXPECT_TRUE(!refusal || refusal->message == "“PathState” can’t be saved");
  }
}

TEST(EditTableTest, EmptyRowsAreNotWritten) {
  using Map = jobfile::StringMap<bool>;
  const struct {
    std::vector<TableRow> rows;
    std::optional<Map> dictionary;
    std::optional<Texts> array;
  } table[] = {
      {{}, std::nullopt, std::nullopt},
      {{{true, {""}}, {false, {""}}}, std::nullopt, std::nullopt},
      {{{true, {"b"}}, {true, {""}}, {false, {"a"}}}, Map{{"a", false}, {"b", true}}, Texts{"b", "a"}},
      {{{true, {"a"}}, {false, {"a"}}}, Map{{"a", false}}, Texts{"a", "a"}},
  };
  for (const auto& row : table) {
    std::optional<Map> dictionary;
    std::optional<Texts> array;
    fromRows(row.rows, dictionary);
    fromRows(row.rows, array);
    EXPECT_EQ(dictionary, row.dictionary);
    EXPECT_EQ(array, row.array);
  }
}

}  // namespace
}  // namespace mirvel
