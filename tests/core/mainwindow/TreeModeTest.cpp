#include "core/mainwindow/TreeMode.h"

#include <gmock/gmock.h>

#include <map>

#include "core/propertylist/Reader.h"
#include "support/ModeFixture.h"

namespace mirvel {
namespace {

using testdata::nowhere;
using testing::ElementsAre;

class RecordingOutline final : public testdata::RecordingView<TreeOutlineType, IndexPath> {
 public:
  std::vector<IndexPath> reloadedRows;
  std::map<std::size_t, bool> expanded;  // by the last calls
  int redraws = 0;

  void reload() override {
    RecordingView::reload();
    expanded.clear();
  }
  void redraw() override { ++redraws; }
  void setExpanded(std::size_t section, bool isExpanded) override { expanded[section] = isExpanded; }
  void reloadRow(IndexPath path) override { reloadedRows.push_back(path); }
};

class TreeModeTest : public testdata::ModeFixture {
 protected:
  TreeModeTest() { (void)foundation.defaults.setSelectedMode(1); }

  /// As at the next start of the program.
  void startAgain() {
    tree.reset();
    tree = std::make_unique<TreeMode>(program().windowContext, outline);
  }
  /// The groups by the letters of their first jobs, capital if they are open.
  std::string groups() const {
    std::string result;
    for (std::size_t i = 0; i < tree->sections().size(); ++i) {
      const char letter = tree->sections()[i].jobs.front()->name.front();
      result += tree->isExpanded(i) ? static_cast<char>(std::toupper(letter)) : letter;
    }
    return result;
  }

  RecordingOutline outline;
  std::unique_ptr<TreeMode> tree = std::make_unique<TreeMode>(program().windowContext, outline);
};

TEST_F(TreeModeTest, RowsDescribeJobsAndGroupsAndCountFilteredJobs) {
  const Jobs jobs = someJobs();
  jobs[1]->icon = Image::named("icon");
  publish(*tree, jobs);
  const struct {
    IndexPath path;
    const char* text;
    const char* toolTip;
    const char* count;
  } rows[] = {
      {{0}, "Ada Lovelace", "", "2"},    {{1}, "Everyone", "", "1"}, {{0, 1}, "b", "summary of b", ""},
      {{1, 0}, "c", "summary of c", ""}, {{4}, "", "", ""},          {{0, 2}, "", "", ""},
  };
  for (const auto& row : rows) {
    const TreeCell cell = tree->cell(row.path);
    EXPECT_EQ(cell.text, row.text);
    EXPECT_EQ(cell.toolTip, row.toolTip) << row.text;
    EXPECT_EQ(cell.count, row.count) << row.text;
  }
  EXPECT_EQ(tree->cell({0}).image, program().kinds.icon(Kind::userAgent));
  EXPECT_EQ(tree->cell({0, 1}).image, Image::named("icon"));
  tree->update({jobs[1]});
  EXPECT_EQ(tree->cell({0}).count, "1");
  EXPECT_EQ(outline.reloads, 2);
  tree->update({copy(*jobs[1])});
  EXPECT_EQ(outline.reloads, 2) << "equal";
}

TEST_F(TreeModeTest, ADisabledJobIsMarked) {
  writeJob(Kind::userAgent, "off", {{"Disabled", true}});
  scan();
  EXPECT_TRUE(tree->cell({0, 0}).isSecondary);
  EXPECT_EQ(tree->cell({0, 0}).image, statusImage(false, foundation.localize));
}

TEST_F(TreeModeTest, GroupsKeepTheirStateAcrossScansFiltersAndStarts) {
  const Jobs all{job(Kind::userAgent, "a"), job(Kind::localAgent, "b"), job(Kind::localDaemon, "c")};
  const Jobs withoutB{all[0], all[2]};
  const Jobs withAnother{all[0], all[1], all[2], job(Kind::userAgent, "x")};
  const Jobs withTool{all[0], all[1], all[2], job(Kind::privilegedHelperTool, "p")};
  const struct {
    const char* what;
    std::function<void()> does;
    const char* groups;
  } rows[] = {
      {"never touched", [&] { publish(*tree, all); }, "ABC"},
      {"started again", [&] { startAgain(); }, "ABC"},
      {"closed one", [&] { tree->toggle(0); }, "aBC"},
      {"closed another", [&] { tree->setExpanded(2, false); }, "aBc"},
      {"beyond them", [&] { tree->toggle(9); }, "aBc"},
      {"refreshed", [&] { publish(*tree, withAnother); }, "aBc"},
      {"started again", [&] { startAgain(); }, "aBc"},
      {"a new group", [&] { publish(*tree, withTool); }, "aBcp"},
      {"filtered", [&] { tree->update({all[0]}); }, "a"},
      {"the filter is gone", [&] { tree->update(all); }, "aBc"},
      {"filtered", [&] { tree->update(withoutB); }, "ac"},
      {"opened one meanwhile", [&] { tree->toggle(1); }, "aC"},
      {"the group that was away is forgotten", [&] { tree->update(all); }, "abC"},
      {"and at the next start", [&] { startAgain(); }, "abCp"},
      {"closed the last", [&] { tree->toggle(2); }, "abcp"},
      {"all stay closed", [&] { startAgain(); }, "abcp"},
  };
  for (const auto& row : rows) {
    row.does();
    EXPECT_EQ(groups(), row.groups) << row.what;
  }
}

TEST_F(TreeModeTest, OpenGroupsAreSavedByTheNumbersOfTheirKinds) {
  const struct {
    const char* saved;  // what the settings hold
    const char* groups;
  } rows[] = {
      {"<array><integer>2</integer><integer>9</integer></array>", "abC"},
      {"<array/>", "abc"},
      {"<array><string>0</string><integer>1</integer><integer>-1</integer></array>", "aBc"},
      {"<string>0</string>", "ABC"},
  };
  publish(*tree, {job(Kind::userAgent, "a"), job(Kind::localAgent, "b"), job(Kind::localDaemon, "c")});
  for (const auto& row : rows) {
    (void)folder.write("preferences.plist",
                       "<plist version=\"1.0\"><dict><key>Tree</key>" + std::string(row.saved) + "</dict></plist>");
    startAgain();
    EXPECT_EQ(groups(), row.groups) << row.saved;
  }
  tree->toggle(0);
  const auto settings = propertylist::read(testdata::bytes(roots.defaultsFile));
  EXPECT_EQ(*settings->value().as<propertylist::Dictionary>()->find("Tree"), (propertylist::Array{1, 2}));
}

TEST_F(TreeModeTest, SelectOpensTheGroupOfTheJob) {
  publish(*tree, someJobs());
  tree->toggle(0);
  tree->select(URL::file("/jobs/none.plist"));
  EXPECT_FALSE(tree->isExpanded(0));
  expectToMarkByJob(*tree, outline, {0, 1});
  EXPECT_TRUE(outline.expanded[0]);
  tree->toggle(0);
  tree->deselect();
  expectToSelectByURL(*tree, outline, {0, 0}, {0, 1});
  EXPECT_TRUE(outline.expanded[0]);
}

TEST_F(TreeModeTest, GroupsAreNeverSelectedAndNeverAskAboutChanges) {
  publish(*tree, someJobs());
  const struct {
    bool hasUnsavedChanges;
    IndexPath path;
    bool maySelect;
    std::size_t questions;
  } rows[] = {{false, {0}, false, 0}, {false, {0, 1}, true, 0}, {true, {1}, false, 0}, {true, {1, 0}, false, 1}};
  for (const auto& row : rows) {
    program().editing.setUnsavedChanges(row.hasUnsavedChanges);
    EXPECT_EQ(tree->maySelect(row.path), row.maySelect) << testing::PrintToString(row.path);
    EXPECT_EQ(interface.sheets.size(), row.questions) << testing::PrintToString(row.path);
  }
  program().editing.setUnsavedChanges(false);
  tree->selectionDidChange({1, 0});
  EXPECT_EQ(program().selection.job(), program().catalogue.jobs()[2]);
  for (const IndexPath path : {IndexPath{0}, nowhere, IndexPath{0, 2}}) tree->selectionDidChange(path);
  EXPECT_EQ(program().selection.job(), program().catalogue.jobs()[2]) << "the details keep their job";
}

TEST_F(TreeModeTest, AnAccessiblePressSelectsJobsOfTheCatalogue) {
  publish(*tree, someJobs());
  const auto gone = job(Kind::userAgent, "gone");
  tree->update({program().catalogue.jobs()[0], gone});
  const struct {
    bool hasUnsavedChanges;
    IndexPath path;
    bool succeeds;
  } rows[] = {{true, {0, 0}, false},
              {false, {0, 0}, true},
              {false, {0}, false},
              {false, nowhere, false},
              {false, {0, 1}, false}};
  for (const auto& row : rows) {
    program().editing.setUnsavedChanges(row.hasUnsavedChanges);
    program().selection.select(nullptr);
    outline.marked.reset();
    EXPECT_EQ(tree->accessibilityPress(row.path), row.succeeds) << testing::PrintToString(row.path);
    EXPECT_EQ(program().selection.job(), row.succeeds ? program().catalogue.jobs()[0] : nullptr);
    EXPECT_EQ(outline.marked.has_value(), row.succeeds);
    EXPECT_TRUE(interface.sheets.empty());
  }
}

TEST_F(TreeModeTest, FollowsTheCatalogueWhileItIsVisible) {
  publish(*tree, someJobs());
  const auto news = [&] { program().notifications.jobsUpdated.post(); };
  news();
  EXPECT_EQ(outline.redraws, 0);
  tree->didAppear();
  news();
  EXPECT_EQ(outline.redraws, 1);
  tree->didDisappear();
  news();
  EXPECT_EQ(outline.redraws, 1);
  tree->reloadJob(program().catalogue.jobs()[2]);
  tree->reloadJob(copy(*program().catalogue.jobs()[2]));
  EXPECT_THAT(outline.reloadedRows, ElementsAre(IndexPath{1, 0}));
}

}  // namespace
}  // namespace mirvel
