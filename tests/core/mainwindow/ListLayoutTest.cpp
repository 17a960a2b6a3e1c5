#include "core/mainwindow/ListLayout.h"

#include <gtest/gtest.h>

#include "core/locale/Localize.h"

namespace mirvel {
namespace {

using List = ListColumn;

TEST(ListLayoutTest, ColumnsHaveIdentifiersAndTitles) {
  const Localize localize("en");
  const std::pair<const char*, const char*> table[] = {
      {"name", "Name"},          {"summary", "Summary"},     {"kind", "Kind"}, {"enabled", "Enabled"},
      {"keepAlive", "Relaunch"}, {"scheduled", "Scheduled"}, {"run", "Run"}};
  for (std::size_t i = 0; i < std::size(table); ++i) {
    EXPECT_EQ(listColumn(table[i].first), allListColumns.at(i));
    EXPECT_EQ(title(allListColumns.at(i), localize), table[i].second);
  }
  EXPECT_FALSE(listColumn(""));
  EXPECT_FALSE(listColumn("Name"));
}

TEST(ListLayoutTest, TheLastVisibleColumnStays) {
  EXPECT_EQ(toggled({List::Name, List::Run}, List::Name), std::vector{List::Run});
  EXPECT_EQ(toggled({List::Run}, List::Name), (std::vector{List::Name, List::Run}));
  EXPECT_EQ(toggled({List::Name, List::Run}, List::Kind), (std::vector{List::Name, List::Kind, List::Run}));
  EXPECT_EQ(toggled({List::Run}, List::Run), std::nullopt);
}

TEST(ListLayoutTest, StoredColumnsKeepOrderWidthAndVisibility) {
  const std::vector<ListPlace> places{{List::Run, 300},        {List::Name, 210},   {List::Kind, 40, false},
                                      {List::Summary, 0},      {List::Enabled, 30}, {List::KeepAlive, 0, false},
                                      {List::Scheduled, 10000}};
  const std::string text = "run 300,name 210,kind 40 hidden,summary,enabled 30,keepAlive hidden,scheduled 10000";
  EXPECT_EQ(layoutText(places), text);
  EXPECT_EQ(layoutIn(text), places);
}

TEST(ListLayoutTest, AnyTextYieldsAllColumnsAndOneIsVisible) {
  const struct {
    const char* text;
    const char* layout;
  } table[] = {
      {"", "name,summary,kind,enabled,keepAlive,scheduled,run"},
      {"run 50", "run 50,name,summary,kind,enabled,keepAlive,scheduled"},
      {"run 50,run 60,unheard 70,,", "run 50,name,summary,kind,enabled,keepAlive,scheduled"},
      {"run -5,name 99999999999,summary 10001,kind 5x", "run,name,summary,kind,enabled,keepAlive,scheduled"},
      {"name hidden 20 hidden", "name 20 hidden,summary,kind,enabled,keepAlive,scheduled,run"},
      {"name hidden,summary hidden,kind hidden,enabled hidden,keepAlive hidden,scheduled hidden,run 9 hidden",
       "name,summary,kind,enabled,keepAlive,scheduled,run 9"},
  };
  for (const auto& row : table) EXPECT_EQ(layoutText(layoutIn(row.text)), row.layout) << row.text;
}

TEST(ListLayoutTest, TheSortOrderIsReadBack) {
  const struct {
    const char* text;
    const char* key;  // null: none
    bool isAscending;
  } table[] = {{"name", "name", true}, {"-run", "run", false},   {"", nullptr, true},
               {"-", nullptr, true},   {"--run", nullptr, true}, {"size", nullptr, true}};
  for (const auto& row : table) {
    const auto descriptor = sortIn(row.text);
    ASSERT_EQ(descriptor.has_value(), row.key != nullptr) << row.text;
    if (!descriptor) continue;
    EXPECT_EQ(descriptor->key, row.key);
    EXPECT_EQ(descriptor->isAscending, row.isAscending);
    EXPECT_EQ(sortText(*descriptor), row.text);
  }
}

}  // namespace
}  // namespace mirvel
