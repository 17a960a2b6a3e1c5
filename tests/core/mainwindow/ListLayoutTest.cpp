#include "core/mainwindow/ListLayout.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

using Column::List;

TEST(ListLayoutTest, ColumnsComeBackInTheirPlacesWithTheirWidths) {
  const std::vector<ListPlace> places{{List::run, 300},        {List::name, 210},   {List::kind, 40, false},
                                      {List::summary, 0},      {List::enabled, 30}, {List::keepAlive, 0, false},
                                      {List::scheduled, 10000}};
  const std::string text = "run 300,name 210,kind 40 hidden,summary,enabled 30,keepAlive hidden,scheduled 10000";
  EXPECT_EQ(layoutText(places), text);
  EXPECT_EQ(layoutIn(text), places);
}

TEST(ListLayoutTest, WhateverTheTextSaysAllColumnsAreThereAndOneIsVisible) {
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

TEST(ListLayoutTest, TheSortOrderComesBack) {
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
