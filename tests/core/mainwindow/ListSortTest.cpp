#include "core/mainwindow/ListSort.h"

#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"

namespace mirvel {
namespace {

using List = ListColumn;
using propertylist::Dictionary;

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

TEST(ListSortTest, MarkedJobsAndLowerKindsPrecedeOthersInStrictOrder) {
  const auto plain = launchd("plain");
  const auto disabled = launchd("disabled", {{"Disabled", true}});
  const auto enabled = launchd("enabled", {{"Disabled", false}});
  const auto kept = launchd("kept", {{"KeepAlive", false}});
  const auto timed = launchd("timed", {{"StartInterval", 60}});
  const auto item = other("item");
  const auto tool = other("tool", Kind::privilegedHelperTool);
  const struct {
    List column;
    std::shared_ptr<Job> a, b;
    bool isFirst;  // a precedes b; b never precedes a
  } table[] = {
      {List::Kind, plain, item, true},
      {List::Kind, item, tool, true},
      {List::Kind, plain, timed, false},
      {List::Enabled, plain, disabled, true},
      {List::Enabled, plain, enabled, false},
      {List::Enabled, item, disabled, true},
      {List::Enabled, disabled, disabled, false},
      {List::KeepAlive, kept, plain, true},
      {List::KeepAlive, kept, kept, false},
      {List::KeepAlive, plain, plain, false},
      {List::KeepAlive, kept, item, true},
      {List::KeepAlive, plain, item, false},
      {List::KeepAlive, item, tool, false},
      {List::Scheduled, timed, plain, true},
      {List::Scheduled, timed, timed, false},
      {List::Scheduled, plain, plain, false},
      {List::Scheduled, timed, item, true},
      {List::Scheduled, item, tool, false},
  };
  for (const auto& row : table) {
    const std::string place = std::string(identifier(row.column)) + " " + row.a->name + " " + row.b->name;
    EXPECT_EQ(precedes(*row.a, *row.b, row.column, true), row.isFirst) << place;
    EXPECT_FALSE(precedes(*row.b, *row.a, row.column, true)) << place;
    EXPECT_FALSE(precedes(*row.a, *row.b, row.column, false)) << place;
    EXPECT_EQ(precedes(*row.b, *row.a, row.column, false), row.isFirst) << place;
  }
}

TEST(ListSortTest, EachColumnSortsBothWaysAndKeepsEqualJobs) {
  const Collator collator("en");
  const Jobs jobs{launchd("b10", {{"Disabled", true}, {"Program", "/bin/2"}}),
                  launchd("B2", {{"StartInterval", 5}, {"Program", "/bin/10"}}, Kind::localDaemon),
                  launchd("a", {{"KeepAlive", true}, {"Program", "/opt/1"}}, Kind::localAgent),
                  launchd("\u00e1", {{"Program", "/bin/2"}})};
  const struct {
    List column;
    const char* ascending;
    const char* descending;
  } table[] = {
      {List::Name, "a \u00e1 B2 b10", "b10 B2 \u00e1 a"},      {List::Summary, "a b10 \u00e1 B2", "B2 b10 \u00e1 a"},
      {List::Run, "b10 \u00e1 B2 a", "a B2 b10 \u00e1"},       {List::Kind, "b10 \u00e1 a B2", "B2 a b10 \u00e1"},
      {List::Enabled, "B2 a \u00e1 b10", "b10 B2 a \u00e1"},   {List::KeepAlive, "a b10 B2 \u00e1", "b10 B2 \u00e1 a"},
      {List::Scheduled, "B2 b10 a \u00e1", "b10 a \u00e1 B2"},
  };
  for (const auto& row : table) {
    Jobs sorted = jobs;
    sortJobs(sorted, row.column, true, collator);
    EXPECT_EQ(order(sorted), row.ascending) << identifier(row.column);
    sorted = jobs;
    sortJobs(sorted, row.column, false, collator);
    EXPECT_EQ(order(sorted), row.descending) << identifier(row.column);
  }
}

TEST(ListSortTest, MarkedJobsPrecedeJobsThatAreNotOfLaunchd) {
  const Collator collator("en");
  const Jobs jobs{launchd("plain"), other("item"), other("tool", Kind::privilegedHelperTool),
                  launchd("kept", {{"KeepAlive", true}, {"StartInterval", 60}}, Kind::systemDaemon)};
  for (const List column : {List::KeepAlive, List::Scheduled}) {
    Jobs sorted = jobs;
    sortJobs(sorted, column, true, collator);
    EXPECT_EQ(order(sorted), "kept plain item tool") << identifier(column);
  }
}

}  // namespace
}  // namespace mirvel
