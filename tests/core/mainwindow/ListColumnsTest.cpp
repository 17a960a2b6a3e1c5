#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "core/locale/Localize.h"
#include "core/mainwindow/ListLayout.h"
#include "core/mainwindow/ListSort.h"
#include "core/runs/JobRuns.h"
#include "core/session/Catalogue.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"

namespace mirvel {
namespace {

using List = ListColumn;
using propertylist::Dictionary;

TEST(ListLayoutTest, ColumnsHaveIdentifiersAndTitles) {
  const Localize localize("en");
  const std::pair<const char*, const char*> table[] = {
      {"name", "Name"},       {"summary", "Summary"},    {"kind", "Kind"},
      {"enabled", "Enabled"}, {"keepAlive", "Relaunch"}, {"scheduled", "Scheduled"},
      {"run", "Run"},         {"lastRun", "Last Run"},   {"state", "State"}};
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
  const std::vector<ListPlace> places{{List::Run, 300},         {List::Name, 210},        {List::Kind, 40, false},
                                      {List::Summary, 0},       {List::Enabled, 30},      {List::KeepAlive, 0, false},
                                      {List::Scheduled, 10000}, {List::State, 90, false}, {List::LastRun, 120}};
  const std::string text =
      "run 300,name 210,kind 40 hidden,summary,enabled 30,keepAlive hidden,scheduled 10000,state 90 hidden,lastRun 120";
  EXPECT_EQ(layoutText(places), text);
  EXPECT_EQ(layoutIn(text), places);
}

TEST(ListLayoutTest, AnyTextYieldsAllColumnsAndOneIsVisible) {
  const struct {
    const char* text;
    const char* layout;
  } table[] = {
      {"", "name,summary,kind,enabled,state,lastRun,keepAlive,scheduled,run"},
      {"run 50", "run 50,name,summary,kind,enabled,state,lastRun,keepAlive,scheduled"},
      {"run 50,run 60,unheard 70,,", "run 50,name,summary,kind,enabled,state,lastRun,keepAlive,scheduled"},
      {"run -5,name 99999999999,summary 10001,kind 5x",
       "run,name,summary,kind,enabled,state,lastRun,keepAlive,scheduled"},
      {"name hidden 20 hidden", "name 20 hidden,summary,kind,enabled,state,lastRun,keepAlive,scheduled,run"},
      // As stored before there were columns about runs.
      {"run 300,name 210,kind 40 hidden,summary,enabled 30,keepAlive hidden,scheduled",
       "run 300,name 210,kind 40 hidden,summary,enabled 30,state,lastRun,keepAlive hidden,scheduled"},
      {"name hidden,summary hidden,kind hidden,enabled hidden,keepAlive hidden,scheduled hidden,run 9 hidden,"
       "state hidden,lastRun hidden",
       "name,summary,kind,enabled,keepAlive,scheduled,run 9,state,lastRun"},
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

std::shared_ptr<Job> launchd(const std::string& name, Dictionary keys = {}, Kind kind = Kind::userAgent) {
  testdata::RecordingConsole console;
  return Launchd::read(testdata::jobText(name, std::move(keys)), URL::file("/" + name), kind, {}, console);
}

std::shared_ptr<Job> other(const std::string& name, Kind kind = Kind::localStartupItem) {
  return std::make_shared<Job>(kind, name, "", name, URL::file("/" + name));
}

std::string order(const Jobs& jobs) {
  std::string names;
  for (const auto& job : jobs) names += (names.empty() ? "" : " ") + job->name;
  return names;
}

TEST(ListSortTest, EachColumnSortsBothWaysAndKeepsEqualJobs) {
  const Collator collator("en");
  Catalogue catalogue;
  const JobRuns runs(catalogue);  // without any
  const Jobs jobs{launchd("b10", {{"Disabled", true}, {"Program", "/bin/2"}}),
                  launchd("B2", {{"StartInterval", 5}, {"Program", "/bin/10"}}, Kind::localDaemon),
                  launchd("a", {{"KeepAlive", true}, {"Program", "/opt/1"}}, Kind::localAgent),
                  launchd("\u00e1", {{"Program", "/bin/2"}}),
                  other("item"),
                  other("tool", Kind::privilegedHelperTool)};
  const struct {
    List column;
    const char* ascending;
    const char* descending;
  } table[] = {
      {List::Name, "a \u00e1 B2 b10 item tool", "tool item b10 B2 \u00e1 a"},
      {List::Summary, "item tool a b10 \u00e1 B2", "B2 b10 \u00e1 a item tool"},
      {List::Run, "item tool b10 \u00e1 B2 a", "a B2 b10 \u00e1 item tool"},
      {List::Kind, "b10 \u00e1 a B2 item tool", "tool item B2 a b10 \u00e1"},
      {List::Enabled, "B2 a \u00e1 item tool b10", "b10 B2 a \u00e1 item tool"},
      {List::KeepAlive, "a b10 B2 \u00e1 item tool", "b10 B2 \u00e1 item tool a"},
      {List::Scheduled, "B2 b10 a \u00e1 item tool", "b10 a \u00e1 item tool B2"},
  };
  for (const auto& row : table) {
    Jobs sorted = jobs;
    sortJobs(sorted, row.column, true, collator, runs);
    EXPECT_EQ(order(sorted), row.ascending) << identifier(row.column);
    sorted = jobs;
    sortJobs(sorted, row.column, false, collator, runs);
    EXPECT_EQ(order(sorted), row.descending) << identifier(row.column);
  }
}

}  // namespace
}  // namespace mirvel
