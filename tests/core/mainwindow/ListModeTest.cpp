#include "core/mainwindow/ListMode.h"

#include <gmock/gmock.h>

#include "support/FakeRunSource.h"
#include "support/ModeFixture.h"

namespace mirvel {
namespace {

using List = ListColumn;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Names = std::vector<std::string>;

class RecordingTable final : public testdata::RecordingView<ListTableType, std::size_t> {
 public:
  int headers = 0;
  std::vector<std::size_t> reloadedRows;
  int redraws = 0;

  void prepareHeaders() override { ++headers; }
  void reloadRow(std::size_t row) override { reloadedRows.push_back(row); }
  void redraw() override { ++redraws; }
};

class ListModeTest : public testdata::ModeFixture {
 protected:
  ListModeTest() { (void)foundation.defaults.setSelectedMode(2); }

  std::shared_ptr<Job> copyOf(const std::string& label) { return copy(*jobNamed(label)); }
  Names rows() { return names(list.content()); }
  void fill() {
    writeJob(Kind::userAgent, "a", {{"Program", "/z"}});
    writeJob(Kind::userAgent, "b", {{"Program", "/y"}});
    writeJob(Kind::userAgent, "c", {{"Program", "/x"}, {"Disabled", true}});
    scan();
    shell.events.clear();
  }

  RecordingTable table;
  ListMode list{program().windowContext, table};
};

TEST_F(ListModeTest, CellsDescribeTheJob) {
  writeJob(Kind::userAgent, "off", {{"Disabled", true}});
  writeJob(Kind::userAgent, "on", {{"Program", "/bin/ls"}, {"KeepAlive", false}, {"StartInterval", 5}});
  loginItems.ownItems = {{"item", "/Applications/Item.app", {}, {}}};
  scan();
  const struct {
    const char* name;
    const char* summary;
    const char* kind;
    const char* run;
    bool isEnabled;
    bool hasKeepAlive;  // present, whatever it holds
    bool isScheduled;
  } expected[] = {
      {"off", "", "Ada Lovelace", "", false, false, false},
      {"on", "ls", "Ada Lovelace", "/bin/ls", true, true, true},
      {"item", "Item.app", "Login Items \u2013 System Settings", "/Applications/Item.app", true, false, false},
  };
  for (std::size_t row = 0; row < std::size(expected); ++row) {
    const auto& job = expected[row];
    const std::pair<List, const char*> texts[] = {
        {List::Name, job.name}, {List::Summary, job.summary}, {List::Run, job.run}};
    for (const auto& [column, text] : texts) {
      const ListCell cell = list.cell(column, row);
      EXPECT_EQ(cell.text, text);
      EXPECT_EQ(cell.toolTip, text);
      EXPECT_EQ(cell.isSecondary, !job.isEnabled) << text;
      EXPECT_FALSE(cell.isChecked);
    }
    EXPECT_EQ(list.cell(List::Kind, row).toolTip, job.kind);
    EXPECT_EQ(list.cell(List::Kind, row).image->accessibilityDescription, job.kind);
    EXPECT_EQ(list.cell(List::Enabled, row).image, statusImage(job.isEnabled, foundation.localize)) << job.name;
    EXPECT_EQ(list.cell(List::KeepAlive, row).isChecked, job.hasKeepAlive) << job.name;
    EXPECT_EQ(list.cell(List::Scheduled, row).isChecked, job.isScheduled) << job.name;
  }
  const ListCell beyond = list.cell(List::Name, std::size(expected));
  EXPECT_TRUE(beyond.text.empty() && !beyond.image && !beyond.isChecked);
}

TEST_F(ListModeTest, OnlyAKnownColumnSortsAndTheSelectedJobStaysVisible) {
  fill();
  for (const char* column : {"run", "odd"}) {
    list.setSortDescriptor({column, true});
    EXPECT_EQ(rows(), (Names{"c", "b", "a"}));
  }
  EXPECT_EQ(table.headers, 0);
  list.setSortDescriptor({"name", true});
  EXPECT_EQ(rows(), (Names{"a", "b", "c"}));
  queue.runFor(0.02);
  EXPECT_EQ(table.headers, 2) << "once for each sort";

  program().selection.select(jobNamed("a"));
  list.setSortDescriptor({"run", true});
  EXPECT_EQ(table.marked, 2U);
  EXPECT_EQ(table.scrolledTo, 2U);
}

TEST_F(ListModeTest, HeadersArentPreparedAfterTheEndOfTheMode) {
  auto ending = std::make_unique<ListMode>(program().windowContext, table);
  ending->setSortDescriptor({"name", true});
  ending.reset();
  queue.runFor(1);
  EXPECT_EQ(table.headers, 0);
  EXPECT_EQ(program().shell.modes[2], nullptr);
}

TEST_F(ListModeTest, ARefreshKeepsTheOrderOfTheUser) {
  fill();
  list.setSortDescriptor({"run", true});
  writeJob(Kind::userAgent, "d", {{"Program", "/xx"}});
  scan();
  EXPECT_EQ(rows(), (Names{"c", "d", "b", "a"})) << "sorted in";
  list.setSortDescriptor({"lastRun", true});
  program().runs.setWindowVisible(true);
  const int reloads = table.reloads;
  const Jobs before = list.content();
  list.update(before);
  EXPECT_EQ(list.content(), before);
  EXPECT_EQ(table.reloads, reloads + 1);
}

TEST_F(ListModeTest, SelectMarksTheRowAndSelectsTheJobOfTheCatalogue) {
  fill();
  expectToMarkByJob(list, table, 1);
  list.update({copyOf("a"), copyOf("b")});
  list.select(url("c"));
  EXPECT_FALSE(table.marked) << "hidden";
  EXPECT_FALSE(program().selection.job());
  expectToSelectByURL(list, table, 0, 1);

  program().editing.setUnsavedChanges(true);
  list.selectionDidChange(1);
  EXPECT_EQ(program().selection.job(), jobNamed("a"));
}

TEST_F(ListModeTest, AClickSelectsTheJobOfItsRow) {
  fill();
  list.setSortDescriptor({"run", true});
  list.selectionDidChange(0);
  EXPECT_EQ(program().selection.job(), jobNamed("c"));
  list.selectionDidChange(3);
  list.selectionDidChange(static_cast<std::size_t>(-1));
  EXPECT_EQ(program().selection.job(), jobNamed("c"));
}

TEST_F(ListModeTest, TheMenuDependsOnTheJob) {
  writeJob(Kind::userAgent, "agent");
  writeJob(Kind::systemAgent, "system");
  loginItems.ownItems = {{"own", "/own", {}, {}}};
  loginItems.bundledItems = {{"bundled", "x", "/x", "/bundled.app", {}}};
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  scan();
  const auto choose = [](const JobMenu& menu, const std::string& title) {
    for (const auto& item : menu.items()) {
      if (item.title == title) item.action();
    }
  };
  const auto titles = [&](std::size_t row) { return ModeFixture::titles(list.menuForRow(row)); };
  const std::string reveal = foundation.localize.revealInFinder();
  EXPECT_THAT(titles(0), ElementsAre("agent", "", "Run Now", "Stop", "", reveal, "Delete"));
  EXPECT_THAT(titles(1), ElementsAre("own", "", reveal, "Delete"));
  EXPECT_THAT(titles(2), ElementsAre("bundled", "", reveal, "Open"));
  EXPECT_THAT(titles(3), ElementsAre("system", "", "Run Now", "Stop", "", reveal));
  EXPECT_THAT(titles(4), IsEmpty());
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, true));
  EXPECT_THAT(titles(3), ElementsAre("system", "", "Run Now", "Stop", "", reveal, "Delete"));

  EXPECT_EQ(list.menuForRow(0).items()[0].type, JobMenu::Item::Type::Title);
  for (const std::size_t row : {0U, 1U, 2U}) choose(list.menuForRow(row), reveal);
  choose(list.menuForRow(2), "Open");
  choose(list.menuForRow(0), "Delete");
  EXPECT_THAT(workspace.calls,
              ElementsAre("reveal " + url("agent").text(),
                          "open " + (roots.systemLibrary / "PreferencePanes/Accounts.prefPane").string(),
                          "reveal /bundled.app", "open /bundled.app"));
  ASSERT_EQ(interface.sheets.size(), 1U);
  EXPECT_EQ(interface.sheets.front().first.message, "Are you sure you want to delete “agent”?");
  EXPECT_THAT(interface.sheets.front().first.informativeText, HasSubstr("“Restore Deleted”"));
  interface.answerSheet(Interface::alternateButton);

  program().selection.select(program().catalogue.jobs()[0]);
  choose(list.menuForRow(1), "Delete");
  EXPECT_EQ(interface.sheets.front().first.message, "Are you sure you want to delete “own”?") << "the one clicked";
  interface.answerSheet(Interface::defaultButton);
  EXPECT_THAT(loginItems.ownItems, IsEmpty());

  int logs = 0;
  program().shell.sheets[Sheet::Log] = [&] { ++logs; };
  choose(list.menuForRow(3), "Show Log");
  EXPECT_EQ(program().selection.job(), jobNamed("system")) << "the log is that of the selected job";
  EXPECT_EQ(logs, 1);
  program().selection.select(jobNamed("agent"));
  program().editing.setUnsavedChanges(true);
  EXPECT_THAT(titles(3), ElementsAre("system", "", "Run Now", "Stop", "", reveal)) << "it can't be selected";
  program().shell.sheets.clear();
  EXPECT_THAT(titles(0), ElementsAre("agent", "", "Run Now", "Stop", "", reveal));
  program().catalogue.jobs()[0]->isNewFile = true;
  EXPECT_THAT(titles(0), IsEmpty());
}

TEST_F(ListModeTest, RunsAreShownSortedAndMarked) {
  fill();
  const auto report = [&](const char* label, double start, int code) {
    return testdata::ranOnce(label, url(label).text(), {.code = code}, start);
  };
  auto& source = testdata::FakeRunSource::in(program().runs);
  source.deliverReports({report("a", 2000, 0), report("b", 1000, 1)});
  EXPECT_EQ(list.cell(List::State, 0).text, "Waiting");
  EXPECT_EQ(list.cell(List::State, 1).text, "Failed");
  EXPECT_EQ(list.cell(List::State, 2).text, "Not loaded");
  EXPECT_TRUE(list.cell(List::State, 2).isSecondary) << "it is disabled";
  EXPECT_FALSE(list.cell(List::Kind, 0).mark);
  EXPECT_EQ(list.cell(List::Kind, 1).mark->accessibilityDescription, "the last run failed");
  EXPECT_THAT(list.cell(List::Kind, 1).toolTip, HasSubstr("exit\u00A0code\u00A01"));
  EXPECT_EQ(list.cell(List::LastRun, 2).text, "");
  EXPECT_NE(list.cell(List::LastRun, 0).text, "");

  const struct {
    const char* key;
    bool isAscending;
    Names rows;
  } orders[] = {{"lastRun", true, {"c", "b", "a"}},
                {"lastRun", false, {"a", "b", "c"}},
                {"state", true, {"b", "a", "c"}},
                {"state", false, {"c", "a", "b"}}};
  for (const auto& row : orders) {
    list.setSortDescriptor({row.key, row.isAscending});
    EXPECT_EQ(rows(), row.rows) << row.key;
  }
  list.setSortDescriptor({"lastRun", true});
  const int reloads = table.reloads;
  source.deliverReports({report("a", 3000, 0)});
  EXPECT_EQ(table.reloads, reloads) << "the order is the same";
  table.reloadedRows.clear();
  list.reloadJob(jobNamed("a"));
  EXPECT_THAT(table.reloadedRows, ElementsAre(2U));
  program().selection.select(jobNamed("a"));
  program().runs.setWindowVisible(false);
  source.deliverReports({report("a", 500, 1)});
  queue.runFor(2);
  EXPECT_EQ(rows(), (Names{"c", "b", "a"})) << "nobody sees them";
  program().runs.setWindowVisible(true);
  queue.runFor(2);
  EXPECT_EQ(rows(), (Names{"c", "a", "b"}));
  EXPECT_EQ(table.marked, 1U);

  ASSERT_TRUE(foundation.defaults.setSelectedMode(0));
  const int reloadsBefore = table.reloads;
  source.deliverReports({report("a", 5000, 0)});
  queue.runFor(2);
  EXPECT_EQ(table.reloads, reloadsBefore) << "another mode is shown";
  ASSERT_TRUE(foundation.defaults.setSelectedMode(2));
  list.update(Jobs(list.content()));
  EXPECT_EQ(rows(), (Names{"c", "b", "a"}));
}

TEST_F(ListModeTest, TheFirstOfTheDraggedRowsDecides) {
  fill();
  loginItems.ownItems = {{"own", "/own", {}, {}}};
  scan();
  EXPECT_EQ(list.dragRows({1, 0})->text(), url("b").text());
  EXPECT_EQ(list.dragRows({1, 99})->text(), url("b").text());
  EXPECT_FALSE(list.dragRows({3, 0})) << "a login item";
  EXPECT_FALSE(list.dragRows({99, 0}));
  EXPECT_FALSE(list.dragRows({}));
}

}  // namespace
}  // namespace mirvel
