#include "core/mainwindow/MenuController.h"

#include <gmock/gmock.h>

#include "core/mainwindow/ShareItems.h"
#include "core/session/Shell.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class MenuControllerTest : public testdata::ProgramFixture {
 protected:
  MenuController& menus() { return program().menus; }
  void select(const std::string& name) {
    scan();
    program().selection.select(jobNamed(name));
  }

  testdata::RecordingShell shell{program()};
};

TEST_F(MenuControllerTest, CommandsAreOfferedOnceTheirComponentIsRegisteredAndReachIt) {
  writeJob(Kind::userAgent, "a");
  select("a");
  Shell& to = program().shell;
  const auto note = [this](const char* text) { return [this, text] { shell.note(text); }; };
  const auto sheet = [&](Sheet kind, const char* text) {
    return [&to, kind, opened = note(text)] { to.sheets[kind] = opened; };
  };
  const auto checkForUpdate = [this](bool isManual) { shell.note(isManual ? "updates, asked" : "updates"); };
  const auto editor = [&] { to.edit = &shell; };
  const struct {
    Command command;
    std::function<void()> registerComponent;
    std::vector<std::string> events;
  } table[] = {
      {Command::New, sheet(Sheet::New, "new"), {"new"}},
      {Command::Duplicate, sheet(Sheet::Duplicate, "duplicate"), {"duplicate"}},
      {Command::RestoreDeleted, sheet(Sheet::RestoreDeleted, "restore deleted"), {"restore deleted"}},
      {Command::Test, sheet(Sheet::Test, "test"), {"test"}},
      {Command::Log, sheet(Sheet::Log, "log"), {"log"}},
      {Command::Info, sheet(Sheet::Info, "info"), {"info"}},
      {Command::Import, [&] { to.importJob = note("import"); }, {"import"}},
      {Command::Export, [&] { to.exportJob = note("export"); }, {"export"}},
      {Command::CheckForUpdates, [&] { to.checkForUpdate = checkForUpdate; }, {"updates, asked"}},
      {Command::Edit, editor, {"showEdit"}},
      {Command::Revert, editor, {}},
      {Command::Save, [&] { to.saveScript = note("script saved"); }, {"script saved"}},
  };
  for (const auto& row : table) {
    to.edit = nullptr;
    shell.events.clear();
    EXPECT_FALSE(menus().isOffered(row.command)) << static_cast<int>(row.command);
    row.registerComponent();
    EXPECT_TRUE(menus().isOffered(row.command)) << static_cast<int>(row.command);
    menus().perform(row.command);
    EXPECT_EQ(shell.events, row.events);
  }
}

TEST_F(MenuControllerTest, CommandsReachTheWindowAndTheDesktop) {
  writeJob(Kind::userAgent, "a");
  select("a");
  shell.events.clear();
  for (const Command command : {Command::Filter, Command::FullScreen, Command::About}) menus().perform(command);
  shell.tab = DetailTab::LaunchdEdit;
  menus().perform(Command::Save);
  program().shell.showHelp = [this](const std::string& fragment) { shell.note("help " + fragment); };
  program().shell.showPreferences = [this] { shell.note("preferences"); };
  for (const Command command : {Command::Help, Command::Preferences}) menus().perform(command);
  EXPECT_THAT(shell.events,
              ElementsAre("focusOnFilter", "toggleFullScreen", "showAbout", "save", "help ", "preferences"));
  for (const Command command :
       {Command::ManLaunchdplist, Command::Site, Command::MailSupport, Command::RevealInFinder}) {
    menus().perform(command);
  }
  EXPECT_THAT(workspace.calls, ElementsAre(HasSubstr("launchd.plist"), "openAddress https://mirvel.app",
                                           "openAddress mailto:support@mirvel.app",
                                           "reveal " + path(Kind::userAgent, "a.plist").string()));
  program().shell.emptyIconCache = [this] { shell.note("empty icon cache"); };
  menus().perform(Command::Refresh);
  EXPECT_EQ(fetchQueue.count(), 1U);
  EXPECT_THAT(shell.events, Contains("empty icon cache"));
  menus().perform(Command::Delete);
  ASSERT_EQ(interface.sheets.size(), 1U);
  EXPECT_EQ(interface.sheets.front().first.message, "Are you sure you want to delete “a”?");

  shell.events.clear();
  shell.isSheetUp = true;
  menus().perform(Command::Filter);
  EXPECT_THAT(shell.events, IsEmpty()) << "what isn't enabled isn't done";
}

TEST_F(MenuControllerTest, AnotherModeBeginsWithNoSelectionAndNoFilter) {
  writeJob(Kind::userAgent, "a");
  writeJob(Kind::userAgent, "b");
  select("a");
  program().currentMode.setFilter(program().catalogue.jobs(), "b");
  shell.events.clear();
  menus().perform(Command::Tree);
  EXPECT_EQ(foundation.defaults.selectedMode(), 1);
  EXPECT_EQ(program().currentMode.chosen(), Mode::Tree);
  EXPECT_THAT(shell.events, ElementsAre("showMode 1", "clearFilter", "update, catalogue of 2", "deselect",
                                        "clearDetail", "title Mirvel", "updateDetail", "busy"));
  EXPECT_EQ(names(shell.shown), (std::vector<std::string>{"a", "b"}));
  EXPECT_FALSE(program().selection.job());
  EXPECT_EQ(program().currentMode.filter(), "");
  EXPECT_EQ(fetchQueue.count(), 1U);

  program().editing.setUnsavedChanges(true);
  menus().perform(Command::Grid);
  EXPECT_EQ(program().currentMode.chosen(), Mode::Tree);
  select("a");
  program().editing.setUnsavedChanges(true);
  menus().perform(Command::Tree);
  EXPECT_TRUE(program().selection.job()) << "the mode that is there leaves what is being edited";
  program().editing.setUnsavedChanges(false);
  const auto scanning = program().scanning.begin();
  menus().perform(Command::List);
  EXPECT_EQ(program().currentMode.chosen(), Mode::List) << "a scan is no reason to wait";
  ASSERT_TRUE(foundation.defaults.setSelectedMode(4));
  EXPECT_EQ(program().currentMode.chosen(), Mode::Grid) << "a mode that there isn't";
}

TEST_F(MenuControllerTest, ViewCommandsToggleTheirSettings) {
  menus().perform(Command::TitleBar);
  EXPECT_TRUE(foundation.defaults.showTitleBar());
  EXPECT_EQ(shell.isTitleVisible, true);
  EXPECT_EQ(fetchQueue.count(), 0U);
  menus().perform(Command::System);
  EXPECT_TRUE(foundation.defaults.showSystemJobs());
  queue.runDue();
  EXPECT_EQ(fetchQueue.count(), 1U);
  program().mainWindow.fullScreenDidChange(true);
  EXPECT_TRUE(foundation.defaults.preferFullScreen());
}

TEST_F(MenuControllerTest, CommandsIgnoreAHiddenSelection) {
  writeJob(Kind::userAgent, "a");
  select("a");
  for (const Sheet sheet : {Sheet::Duplicate, Sheet::Test, Sheet::Log, Sheet::Info}) {
    program().shell.sheets[sheet] = [] {};
  }
  program().shell.exportJob = [] {};
  const Command commands[] = {Command::Delete, Command::Duplicate, Command::Export, Command::Test,
                              Command::Log,    Command::Info,      Command::Share,  Command::RevealInFinder};
  for (const bool isShown : {true, false}) {
    shell.tab = isShown ? DetailTab::LaunchdDisplay : DetailTab::NoSelection;  // a filter hides it
    for (const Command command : commands) {
      EXPECT_EQ(menus().isEnabled(command), isShown) << static_cast<int>(command);
    }
    for (const ToolbarItem item : {ToolbarItem::Share, ToolbarItem::Info, ToolbarItem::Test, ToolbarItem::Log}) {
      EXPECT_EQ(menus().isEnabled(item), isShown) << static_cast<int>(item);
    }
    EXPECT_EQ(program().mainWindow.title(), isShown ? "Mirvel – a" : "Mirvel");
  }
  menus().perform(Command::Delete);
  EXPECT_THAT(interface.sheets, IsEmpty());
}

TEST_F(MenuControllerTest, TheEndOfTheSessionAsksAboutUnsavedChanges) {
  writeJob(Kind::userAgent, "a");
  select("a");
  EXPECT_TRUE(program().mainWindow.sessionMayEnd());
  EXPECT_THAT(interface.alerts, IsEmpty());

  program().editing.setUnsavedChanges(true);
  for (const bool discards : {false, true}) {
    interface.answer.button = discards ? Interface::alternateButton : Interface::defaultButton;
    EXPECT_EQ(program().mainWindow.sessionMayEnd(), discards);
    EXPECT_EQ(shell.count("discardEdits"), discards ? 1U : 0U);
  }
  ASSERT_EQ(interface.alerts.size(), 2U);
  EXPECT_EQ(interface.alerts.front().alternateTitle, "Discard Changes");
}

TEST_F(MenuControllerTest, ALaunchdJobIsSharedAsFileAndTextAndOthersAsTheirCommand) {
  writeJob(Kind::userAgent, "a b", {{"Program", "/bin/ls"}});
  loginItems.ownItems = {{"own", "/own/item", {}, {}}};
  EXPECT_FALSE(shareItems(program().selection));
  select("a b");
  const auto items = shareItems(program().selection);
  ASSERT_TRUE(items && items->url);
  EXPECT_THAT(items->text, HasSubstr("<string>/bin/ls</string>"));
  EXPECT_EQ(sharingServices(*items, foundation.localize).size(), 3U);
  for (const auto& service : sharingServices(*items, foundation.localize))
    share(program().platform.workspace, service.way, *items);
  const std::string file = path(Kind::userAgent, "a b.plist").string();
  EXPECT_THAT(workspace.calls,
              ElementsAre("copy " + file + ": " + items->text,
                          HasSubstr("mailto:?subject=a%20b.plist&body=%3c%3fxml%20version"), "open " + file));
  program().selection.select(jobNamed("own"));
  EXPECT_EQ(shareItems(program().selection)->text, "/own/item");
  EXPECT_EQ(sharingServices(*shareItems(program().selection), foundation.localize).size(), 2U)
      << "there is no file to open";
}

}  // namespace
}  // namespace mirvel
