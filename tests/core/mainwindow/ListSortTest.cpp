#include "core/mainwindow/ListSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/catalogue/Launchd.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"

namespace mirvel {
namespace {

using Column::List;
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

TEST(ListSortTest, OfEachPairThePredicatesAnswerExactly) {
  const auto plain = launchd("plain");
  const auto disabled = launchd("disabled", {{"Disabled", true}});
  const auto enabled = launchd("enabled", {{"Disabled", false}});
  const auto kept = launchd("kept", {{"KeepAlive", false}});
  const auto timed = launchd("timed", {{"StartInterval", 60}});
  const auto item = other("item");
  const auto tool = other("tool", Kind::privilegedHelperTool);
  const struct {
    List column;
    std::shared_ptr<Job> a;
    std::shared_ptr<Job> b;
    bool ascending;          // a before b
    bool ascendingReverse;   // b before a
    bool descending;         // a before b
    bool descendingReverse;  // b before a
  } table[] = {
      {List::kind, plain, item, true, false, false, true},
      {List::kind, item, tool, true, false, false, true},
      {List::kind, plain, timed, false, false, false, false},
      {List::enabled, plain, disabled, true, false, false, true},
      {List::enabled, plain, enabled, false, false, false, false},
      {List::enabled, item, disabled, true, false, false, true},
      {List::enabled, disabled, disabled, false, false, false, false},
      {List::keepAlive, kept, plain, true, false, false, true},
      {List::keepAlive, kept, kept, false, false, false, false},
      {List::keepAlive, plain, plain, false, false, false, false},
      {List::keepAlive, kept, item, true, false, false, true},
      {List::keepAlive, plain, item, false, false, false, false},
      {List::keepAlive, item, tool, false, false, false, false},
      {List::scheduled, timed, plain, true, false, false, true},
      {List::scheduled, timed, timed, false, false, false, false},
      {List::scheduled, plain, plain, false, false, false, false},
      {List::scheduled, timed, item, true, false, false, true},
      {List::scheduled, item, tool, false, false, false, false},
  };
  for (const auto& row : table) {
    const std::string place = std::string(Column::identifier(row.column)) + " " + row.a->name + " " + row.b->name;
    EXPECT_EQ(standsBefore(*row.a, *row.b, row.column, true), row.ascending) << place;
    EXPECT_EQ(standsBefore(*row.b, *row.a, row.column, true), row.ascendingReverse) << place;
    EXPECT_EQ(standsBefore(*row.a, *row.b, row.column, false), row.descending) << place;
    EXPECT_EQ(standsBefore(*row.b, *row.a, row.column, false), row.descendingReverse) << place;
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
      {List::name, "a \u00e1 B2 b10", "b10 B2 \u00e1 a"},      {List::summary, "a b10 \u00e1 B2", "B2 b10 \u00e1 a"},
      {List::run, "b10 \u00e1 B2 a", "a B2 b10 \u00e1"},       {List::kind, "b10 \u00e1 a B2", "B2 a b10 \u00e1"},
      {List::enabled, "B2 a \u00e1 b10", "b10 B2 a \u00e1"},   {List::keepAlive, "a b10 B2 \u00e1", "b10 B2 \u00e1 a"},
      {List::scheduled, "B2 b10 a \u00e1", "b10 a \u00e1 B2"},
  };
  for (const auto& row : table) {
    Jobs sorted = jobs;
    sortJobs(sorted, row.column, true, collator);
    EXPECT_EQ(order(sorted), row.ascending) << Column::identifier(row.column);
    sorted = jobs;
    sortJobs(sorted, row.column, false, collator);
    EXPECT_EQ(order(sorted), row.descending) << Column::identifier(row.column);
  }
}

TEST(ListSortTest, OtherJobsInBetweenDontKeepTheMarkedOnesFromComingFirst) {
  const Collator collator("en");
  const Jobs jobs{launchd("plain"), other("item"), other("tool", Kind::privilegedHelperTool),
                  launchd("kept", {{"KeepAlive", true}, {"StartInterval", 60}}, Kind::systemDaemon)};
  for (const List column : {List::keepAlive, List::scheduled}) {
    Jobs sorted = jobs;
    sortJobs(sorted, column, true, collator);
    EXPECT_EQ(order(sorted), "kept plain item tool") << Column::identifier(column);
  }
}

TEST(ListSortTest, NoneOfManyJobsIsLost) {
  std::mt19937 random(3);
  const auto chance = [&] { return random() % 2 == 0; };
  Jobs jobs;
  for (int i = 0; i < 2000; ++i) {
    const std::string name = "job" + std::to_string(random() % 500);
    const auto kind = *Kind::fromRawValue(static_cast<int>(random() % 10));
    if (!kind.isLaunchd()) {
      jobs.push_back(other(name, kind));
      continue;
    }
    Dictionary keys;
    if (chance()) keys.set("Disabled", chance());
    if (chance()) keys.set("KeepAlive", chance());
    if (chance()) keys.set("StartInterval", 60);
    if (chance()) keys.set("Program", "/bin/" + std::to_string(random() % 50));
    jobs.push_back(launchd(name, std::move(keys), kind));
  }
  const Collator collator("en");
  for (const List column : Column::allList) {
    for (const bool isAscending : {true, false}) {
      Jobs sorted = jobs;
      sortJobs(sorted, column, isAscending, collator);
      EXPECT_TRUE(std::is_permutation(sorted.begin(), sorted.end(), jobs.begin(), jobs.end()))
          << Column::identifier(column);
      std::shuffle(jobs.begin(), jobs.end(), random);
    }
  }
}

}  // namespace
}  // namespace mirvel
