#include "core/editor/GridTable.h"

#include <gtest/gtest.h>

#include <functional>

#include "core/locale/Localize.h"

namespace mirvel::GridTable {
namespace {

using Texts = std::vector<std::string>;
using Map = jobfile::StringMap<bool>;

class Recorder final : public GridTableDelegate {
 public:
  int calls = 0;
  std::vector<Item> rows = {};

  void gridTableChanged(const std::string& key, const std::vector<Item>& all) override {
    EXPECT_EQ(key, "PathState");
    ++calls;
    rows = all;
  }
};

TEST(GridTableTest, KindsDecideColumnsAndWhereNewRowsComeFrom) {
  const struct {
    int kind;
    bool hasBox;
    bool isEditable;
    bool holdsPaths;
    Adding adding;
  } table[] = {
      {0, true, true, false, Adding::EmptyRow},    {1, true, true, true, Adding::FilePanel},
      {2, false, true, false, Adding::EmptyRow},   {3, false, true, true, Adding::FilePanel},
      {4, false, true, true, Adding::FolderPanel}, {5, false, false, false, Adding::SessionTypeMenu},
  };
  for (const auto& row : table) {
    const Kind kind{row.kind};
    EXPECT_EQ(hasBox(kind), row.hasBox) << row.kind;
    EXPECT_EQ(isTextEditable(kind), row.isEditable) << row.kind;
    EXPECT_EQ(holdsPaths(kind), row.holdsPaths) << row.kind;
    EXPECT_EQ(adding(kind), row.adding) << row.kind;
  }
}

TEST(GridTableTest, DictionariesAreSortedAndArraysKeepTheirOrder) {
  Recorder recorder;
  const Table sorted(Kind::boolPath, Map{{"/b", true}, {"/a", false}}, "PathState", recorder);
  EXPECT_EQ(sorted.rows(), (std::vector<Item>{{false, "/a"}, {true, "/b"}}));
  const Table ordered(Kind::string, Texts{"b", "a", "b"}, "PathState", recorder);
  EXPECT_EQ(ordered.rows(), (std::vector<Item>{{false, "b"}, {false, "a"}, {false, "b"}}));
  EXPECT_EQ(recorder.calls, 0) << "to fill a table is no edit";
}

TEST(GridTableTest, EachChangeIsToldWithAllRows) {
  Recorder recorder;
  Table table(Kind::boolString, Map{{"a", false}}, "PathState", recorder);
  const struct {
    const char* name;
    std::function<void()> change;
    bool isTold;
    std::vector<Item> rows;
  } steps[] = {
      {"a row to be given its text", [&] { EXPECT_EQ(table.add(""), 1U); }, false, {{false, "a"}, {true, ""}}},
      {"its box", [&] { table.setBox(1, false); }, false, {{false, "a"}, {false, ""}}},
      {"its box again", [&] { table.setBox(1, true); }, false, {{false, "a"}, {true, ""}}},
      {"its text", [&] { table.setText(1, "b"); }, true, {{false, "a"}, {true, "b"}}},
      {"the same text", [&] { table.setText(1, "b"); }, false, {{false, "a"}, {true, "b"}}},
      {"a row beyond the last", [&] { table.setText(2, "c"); }, false, {{false, "a"}, {true, "b"}}},
      {"a box", [&] { table.setBox(0, true); }, true, {{true, "a"}, {true, "b"}}},
      {"the same box", [&] { table.setBox(0, true); }, false, {{true, "a"}, {true, "b"}}},
      {"a box beyond the last", [&] { table.setBox(2, true); }, false, {{true, "a"}, {true, "b"}}},
      {"no row to delete", [&] { EXPECT_FALSE(table.remove(2)); }, false, {{true, "a"}, {true, "b"}}},
      {"the first goes", [&] { EXPECT_TRUE(table.remove(0)); }, true, {{true, "b"}}},
      {"the last goes", [&] { EXPECT_TRUE(table.remove(0)); }, true, {}},
      {"another", [&] { EXPECT_EQ(table.add(""), 0U); }, false, {{true, ""}}},
      {"goes without a text", [&] { EXPECT_TRUE(table.remove(0)); }, false, {}},
  };
  for (const auto& step : steps) {
    recorder.calls = 0;
    step.change();
    EXPECT_EQ(recorder.calls, step.isTold ? 1 : 0) << step.name;
    EXPECT_EQ(table.rows(), step.rows) << step.name;
    if (step.isTold) {
      EXPECT_EQ(recorder.rows, step.rows) << step.name;
    }
  }
}

TEST(GridTableTest, EachSessionTypeCanBeAddedOnce) {
  Recorder recorder;
  Table table(Kind::limitLoadToSessionType, Texts{"Background", "Odd"}, "PathState", recorder);
  const auto offered = [&] {
    Texts result;
    for (const auto& item : table.sessionTypeItems()) {
      EXPECT_FALSE(item.toolTip.empty());
      if (item.isEnabled) result.emplace_back(item.title);
    }
    return result;
  };
  EXPECT_EQ(offered(), (Texts{"Aqua", "LoginWindow", "StandardIO"}));
  table.add("Aqua");
  EXPECT_EQ(offered(), (Texts{"LoginWindow", "StandardIO"}));
  table.remove(0);
  EXPECT_EQ(offered(), (Texts{"Background", "LoginWindow", "StandardIO"}));
}

TEST(GridTableTest, TwoRowsOfOneNameCantBeSavedInADictionary) {
  const Localize localize("en");
  const struct {
    Kind kind;
    std::vector<Item> rows;
    std::optional<InvalidField> refusal;
  } table[] = {
      {Kind::boolString, {{true, "a"}, {true, "b"}, {false, "A"}}, {}},
      {Kind::boolString, {{true, ""}, {true, "a"}, {true, ""}}, {}},
      {Kind::boolPath,
       {{true, "/a"}, {true, "/b"}, {false, "/b"}},
       InvalidField{"“PathState” can’t be saved", "More than one row is called “/b”"}},
      {Kind::path, {{false, "/a"}, {false, "/a"}}, {}},
  };
  Recorder recorder;
  for (const auto& row : table) {
    const Table itsTable(row.kind, row.rows, "PathState", recorder);
    EXPECT_EQ(itsTable.rows(), row.rows);
    EXPECT_EQ(itsTable.refuse(localize), row.refusal);
  }
}

TEST(GridTableTest, RowsWithoutATextAreNotWritten) {
  const struct {
    std::vector<Item> rows;
    std::optional<Map> dictionary;
    std::optional<Texts> array;
  } table[] = {
      {{}, std::nullopt, std::nullopt},
      {{{true, ""}, {false, ""}}, std::nullopt, std::nullopt},
      {{{true, "b"}, {true, ""}, {false, "a"}}, Map{{"a", false}, {"b", true}}, Texts{"b", "a"}},
      {{{true, "a"}, {false, "a"}}, Map{{"a", false}}, Texts{"a", "a"}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(dictionaryOf(row.rows), row.dictionary);
    EXPECT_EQ(arrayOf(row.rows), row.array);
  }
}

}  // namespace
}  // namespace mirvel::GridTable
