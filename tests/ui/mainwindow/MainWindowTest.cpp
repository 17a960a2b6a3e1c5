#include "ui/mainwindow/MainWindow.h"

#include <gmock/gmock.h>

#include <QMenuBar>
#include <QPlainTextEdit>
#include <QToolButton>
#include <algorithm>
#include <map>
#include <set>

#include "core/mainwindow/WindowTexts.h"
#include "ui/mainwindow/HostLine.h"
#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

class MainWindowTest : public WindowFixture {
 protected:
  void type(const char* text) {
    window().filter().setFocus();
    QTest::keyClicks(&window().filter(), QString::fromUtf8(text));
  }
  /// The text drawn in the empty table; nullopt if the view doesn't ask for one.
  std::optional<std::string> drawnLabel() {
    std::optional<std::string> drawn;
    const auto label = table().emptyLabel;
    table().emptyLabel = [&] {
      const QString text = label();
      drawn = utf8(text);
      return text;
    };
    (void)table().grab();
    table().emptyLabel = label;
    return drawn;
  }
};

TEST_F(MainWindowTest, FilterShowsMatchesAndClearingItRestoresTheSelection) {
  fill({"alpha", "beta", "gamma"});
  const std::pair<const char*, std::function<void()>> ends[] = {
      {"escape", [&] { QTest::keyClick(&window().filter(), Qt::Key_Escape); }},
      {"clear", [&] { window().filter().clear(); }},
      {"deleted letter by letter",
       [&] {
         for (int i = 0; i < 5; ++i) QTest::keyClick(&window().filter(), Qt::Key_Backspace);
       }},
  };
  for (const auto& [end, does] : ends) {
    click(1);
    type("gAmma");
    EXPECT_EQ(texts(table()), Names{"gamma"}) << end;
    EXPECT_EQ(markedJob(table()), "") << end;
    EXPECT_EQ(program().selection.job()->name, "beta") << end;
    EXPECT_EQ(shownJob(window()), "") << "commands act on what is shown";
    does();
    EXPECT_EQ(texts(table()), (Names{"alpha", "beta", "gamma"})) << end;
    EXPECT_EQ(markedJob(table()), "beta") << end;
    EXPECT_EQ(shownJob(window()), "beta") << end;
  }
}

TEST_F(MainWindowTest, DeletionKeysInAFieldDoNotTriggerShortcuts) {
  fill({"alpha"});
  click(0);
  const auto deleteIn = [](QWidget& field) {
    field.setFocus();
    for (const Qt::Key key : {Qt::Key_Backspace, Qt::Key_Delete}) {
      QTest::keyClick(&field, key, Qt::ControlModifier);
      QTest::keyClick(&field, key);
    }
  };
  auto* const note = window().details().currentWidget()->findChild<QPlainTextEdit*>();
  note->setPlainText(QStringLiteral("one two"));
  note->moveCursor(QTextCursor::End);
  deleteIn(*note);
  EXPECT_EQ(note->toPlainText(), QStringLiteral("one"));
  type("one two");
  deleteIn(window().filter());
  EXPECT_EQ(window().filter().text(), QStringLiteral("one"));
  EXPECT_THAT(interface.sheets, IsEmpty());

  window().filter().clear();
  table().setFocus();
  QTest::keyClick(&table(), Qt::Key_Backspace, Qt::ControlModifier);
  EXPECT_EQ(interface.sheets.size(), 1U) << "in the list, the key deletes the job";
}

TEST_F(MainWindowTest, CheckingAModeButtonByAnyMeansSwitchesTheMode) {
  fill({"alpha"});
  for (auto* segment : window().findChildren<QToolButton*>()) {
    if (segment->accessibleName() == qt(WindowTexts(foundation.localize).tree())) segment->toggle();
  }
  EXPECT_EQ(program().currentMode.chosen(), Mode::Tree);
}

TEST_F(MainWindowTest, LabelDistinguishesAnEmptyCatalogueFromAFilter) {
  fill({});
  EXPECT_EQ(drawnLabel(), "No Items");
  program().fetcher.fetchJobs();
  EXPECT_EQ(drawnLabel(), foundation.localize.ellipsis().loading());
  settle();
  EXPECT_EQ(drawnLabel(), "No Items");
  fill({"alpha"});
  EXPECT_EQ(drawnLabel(), std::nullopt);
  EXPECT_TRUE(table().alternatingRowColors());
  type("nothing matches this");
  EXPECT_THAT(texts(table()), IsEmpty());
  EXPECT_EQ(drawnLabel(), "");
  EXPECT_FALSE(table().alternatingRowColors()) << "stripes would run through the label";
}

TEST_F(MainWindowTest, KeysMoveTheFocusToTheFilterAndBackToTheList) {
  fill({"alpha"});
  type("old");
  table().setFocus();
  QTest::keyClick(&table(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(window().filter().hasFocus());
  QTest::keyClicks(&window().filter(), QStringLiteral("new"));
  EXPECT_EQ(window().filter().text(), QStringLiteral("new")) << "its text was selected";
  QTest::keyClick(&window().filter(), Qt::Key_Escape);
  EXPECT_TRUE(window().filter().hasFocus()) << "only cleared";
  QTest::keyClick(&window().filter(), Qt::Key_Escape);
  EXPECT_TRUE(table().hasFocus());
}

TEST_F(MainWindowTest, UnsavedChangesKeepTheWindowOpenUntilDiscarded) {
  fill({"alpha"});
  program().editing.setUnsavedChanges(true);
  for (const int answer : {Interface::defaultButton, Interface::alternateButton}) {
    EXPECT_FALSE(window().close());
    EXPECT_TRUE(window().isVisible());
    ASSERT_EQ(interface.sheets.size(), 1U);
    interface.answerSheet(answer);
    EXPECT_EQ(window().isVisible(), answer == Interface::defaultButton);
  }
  EXPECT_FALSE(program().editing.hasUnsavedChanges());
}

TEST_F(MainWindowTest, UnsavedChangesDisableCommandsThatWouldLoseThem) {
  fill({"alpha"});
  click(0);
  for (const bool hasUnsavedChanges : {true, false}) {
    program().editing.setUnsavedChanges(hasUnsavedChanges);
    program().shell.mainWindow->setEdited(hasUnsavedChanges);
    program().shell.mainWindow->validateVisibleItems();
    EXPECT_EQ(window().filter().isEnabled(), !hasUnsavedChanges);
    EXPECT_EQ(window().isWindowModified(), hasUnsavedChanges);
    QTest::keyClick(&table(), Qt::Key_F5);
    EXPECT_EQ(fetchQueue.count(), hasUnsavedChanges ? 0U : 1U);
  }
}

TEST_F(MainWindowTest, RevealShortcutWorksBeforeAnyMenuWasOpened) {
  const auto reveals = [this] {
    return std::count_if(workspace.calls.begin(), workspace.calls.end(),
                         [](const std::string& call) { return call.starts_with("reveal "); });
  };
  fill({"alpha"});
  QTest::keyClick(&table(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(reveals(), 0);
  click(0);
  QTest::keyClick(&table(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(reveals(), 1);
}

TEST_F(MainWindowTest, EachChangeOfActivityIsPostedOnce) {
  (void)window();
  int changes = 0;
  const auto subscription = program().notifications.appStatusChanged.subscribe([&] { ++changes; });
  QEvent change(QEvent::ActivationChange);
  QCoreApplication::sendEvent(&window(), &change);
  EXPECT_EQ(changes, 1);
}

TEST_F(MainWindowTest, TitleNamesTheSelectedJob) {
  fill({"alpha [*] beta"});
  EXPECT_EQ(window().windowTitle(), QStringLiteral("Mirvel[*]"));
  click(0);
  EXPECT_EQ(window().windowTitle(), QStringLiteral("Mirvel[*]")) << "titles are hidden";
  program().menus.perform(Command::TitleBar);
  const QString shown = window().windowHandle()->title();
  EXPECT_TRUE(shown.contains(QStringLiteral("alpha [*] beta"))) << utf8(shown);
}

TEST_F(MainWindowTest, TheReasonIsShownWhileJobsCannotRun) {
  const auto* const line = window().findChild<HostLine*>();
  ASSERT_NE(line, nullptr);
  EXPECT_FALSE(line->isVisible());
  program().hostStart.begin();
  fill({"one"});
  ASSERT_EQ(helpers.requests.size(), 1U);
  helpers.requests.back().reply({{"error", propertylist::Dictionary{{"code", 3}, {"description", "<b>no room</b>"}}}});
  settle();
  EXPECT_TRUE(line->isVisible());
  const auto* const text = line->findChild<QLabel*>();
  EXPECT_EQ(utf8(text->text()), "Your jobs aren’t running: <b>no room</b>");
  EXPECT_EQ(text->textFormat(), Qt::PlainText);

  queue.runFor(HostStart::secondsBetweenAttempts);
  program().notifications.appStatusChanged.post();
  settle();
  ASSERT_EQ(helpers.requests.size(), 2U);
  helpers.requests.back().reply({});
  settle();
  EXPECT_FALSE(line->isVisible());
}

/// The letter after the ampersand; null if there is none.
QChar mnemonic(const QString& text) {
  const auto at = text.indexOf(QLatin1Char('&'));
  return at < 0 || at + 1 >= text.size() ? QChar() : text.at(at + 1).toLower();
}

class MainMenuTest : public WindowFixture {
 protected:
  std::vector<QMenu*> menus() {
    std::vector<QMenu*> result;
    for (QAction* action : window().menuBar()->actions()) result.push_back(action->menu());
    return result;
  }
  QAction* item(const QMenu& menu, const char* title) {
    for (QAction* action : menu.actions()) {
      if (action->text().remove(QLatin1Char('&')).startsWith(QString::fromUtf8(title))) return action;
    }
    ADD_FAILURE() << "no item " << title;
    return menu.actions().front();
  }
  /// Simulates the user opening the menu.
  static void open(QMenu& menu) { emit menu.aboutToShow(); }
};

TEST_F(MainMenuTest, EveryCommandCanBeReachedByKeyboard) {
  Shell& shell = program().shell;
  (void)window();
  for (const Sheet sheet : {Sheet::New, Sheet::Duplicate, Sheet::Test, Sheet::Log, Sheet::Info})
    shell.sheets[sheet] = [] {};
  shell.importJob = shell.exportJob = [] {};
  shell.checkForUpdate = [](bool) {};
  std::map<QString, QString> ownerOfShortcut;
  std::set<QChar> menuLetters;
  for (QMenu* menu : menus()) {
    open(*menu);
    EXPECT_TRUE(menuLetters.insert(mnemonic(menu->title())).second) << utf8(menu->title());
    std::map<QChar, QString> letters;
    for (const QAction* action : menu->actions()) {
      if (action->isSeparator()) continue;
      const QString text = action->text();
      const QChar letter = mnemonic(text);
      EXPECT_TRUE(!letter.isNull() || !action->shortcuts().isEmpty()) << utf8(text);
      if (!letter.isNull()) {
        EXPECT_TRUE(letters.emplace(letter, text).second)
            << utf8(text) << " has the letter of " << utf8(letters[letter]);
      }
      for (const QKeySequence& keys : action->shortcuts()) {
        const bool isNew = ownerOfShortcut.emplace(keys.toString(), text).second;
        EXPECT_TRUE(isNew) << utf8(text) << " has the shortcut of " << utf8(ownerOfShortcut[keys.toString()]);
      }
    }
  }
}

TEST_F(MainMenuTest, UnavailableCommandsAreHiddenAndForbiddenOnesDisabled) {
  fill({"alpha"});
  QMenu& file = *menus().front();
  program().shell.sheets.erase(Sheet::Log);
  open(file);
  EXPECT_FALSE(item(file, "Log")->isVisible());
  EXPECT_FALSE(item(file, "Revisions")->isEnabled());
  for (const char* title : {"Edit Job", "Share", "Delete"}) EXPECT_FALSE(item(file, title)->isEnabled()) << title;
  click(0);
  program().shell.sheets[Sheet::Log] = [] {};
  open(file);
  EXPECT_TRUE(item(file, "Log")->isVisible());
  for (const char* title : {"Edit Job", "Share", "Delete"}) EXPECT_TRUE(item(file, title)->isEnabled()) << title;
}

TEST_F(MainMenuTest, ShareMenuListsTheAvailableWays) {
  fill({"alpha"});
  click(0);
  QMenu& share = *item(*menus().front(), "Share")->menu();
  open(share);
  EXPECT_THAT(titles(share), ElementsAre("Copy", "Email", "Open"));
  share.actions().front()->trigger();
  EXPECT_THAT(workspace.calls, ElementsAre(testing::HasSubstr("alpha.plist: <?xml")));
}

TEST_F(MainMenuTest, EditCommandsActOnTheFocusedWidget) {
  fill({"alpha"});
  QMenu& edit = *menus()[1];
  table().setFocus();
  open(edit);
  EXPECT_FALSE(item(edit, "Paste")->isEnabled());
  window().filter().setFocus();
  QTest::keyClicks(&window().filter(), QStringLiteral("beta"));
  open(edit);
  item(edit, "Select All")->trigger();
  EXPECT_EQ(window().filter().selectedText(), QStringLiteral("beta"));
  item(edit, "Undo")->trigger();
  EXPECT_EQ(window().filter().text(), QString());
}

}  // namespace
}  // namespace mirvel::ui
