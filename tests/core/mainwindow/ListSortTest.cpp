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

TEST(ListSortTest, OtherKindsOfJobsAreEnabledAndHaveNoOtherMark) {
  const Collator collator("en");
  const Jobs jobs{launchd("plain", {{"Disabled", true}}), other("item"), other("tool", Kind::privilegedHelperTool),
                  launchd("kept", {{"KeepAlive", true}, {"StartInterval", 60}}, Kind::systemDaemon)};
  const std::pair<List, const char*> table[] = {{List::Enabled, "item tool kept plain"},
                                                {List::KeepAlive, "kept plain item tool"},
                                                {List::Scheduled, "kept plain item tool"},
                                                {List::Kind, "plain item kept tool"}};
  for (const auto& [column, sorted] : table) {
    Jobs rows = jobs;
    sortJobs(rows, column, true, collator);
    EXPECT_EQ(order(rows), sorted) << identifier(column);
  }
}

}  // namespace
}  // namespace mirvel
