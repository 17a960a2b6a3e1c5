#include "ui/mainwindow/MainMenu.h"

#include <gmock/gmock.h>

#include <QMenuBar>
#include <map>
#include <set>

#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {
namespace {

using testing::ElementsAre;

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
  open(file);
  EXPECT_FALSE(item(file, "Log")->isVisible());
  EXPECT_FALSE(item(file, "Revisions")->isEnabled());
  for (const char* title : {"Edit Job", "Share", "Delete"}) EXPECT_FALSE(item(file, title)->isEnabled()) << title;
  click(0);
  program().shell.sheets[Sheet::Log] = [] {};
  open(file);
  EXPECT_TRUE(item(file, "Log")->isVisible());
  for (const char* title : {"Edit Job", "Share", "Delete"}) EXPECT_TRUE(item(file, title)->isEnabled()) << title;
  program().editing.setUnsavedChanges(true);
  open(file);
  EXPECT_FALSE(item(file, "New")->isEnabled());
  EXPECT_FALSE(item(file, "Delete")->isEnabled());
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
