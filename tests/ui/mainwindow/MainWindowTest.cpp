#include "ui/mainwindow/MainWindow.h"

#include <gmock/gmock.h>

#include <QPlainTextEdit>
#include <QToolButton>
#include <algorithm>

#include "core/mainwindow/WindowTexts.h"
#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {
namespace {

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
    does();
    EXPECT_EQ(texts(table()), (Names{"alpha", "beta", "gamma"})) << end;
    EXPECT_EQ(markedJob(table()), "beta") << end;
    EXPECT_EQ(shownJob(window()), "beta") << end;
  }
}

TEST_F(MainWindowTest, HiddenJobsAreNotActedOnAndVisibleOnesStaySelected) {
  fill({"alpha", "beta"});
  click(1);
  type("beta");
  EXPECT_EQ(markedJob(table()), "beta");
  EXPECT_EQ(shownJob(window()), "beta");
  window().filter().setText(QStringLiteral("alpha"));
  EXPECT_EQ(shownJob(window()), "");
  EXPECT_FALSE(window().windowTitle().contains(QStringLiteral("beta")));
  QTest::keyClick(&table(), Qt::Key_Delete);
  QTest::keyClick(&table(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_THAT(interface.sheets, IsEmpty());
  EXPECT_EQ(shownJob(window()), "");
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

TEST_F(MainWindowTest, EscapeInAnEmptyFilterMovesTheFocusToTheList) {
  fill({"alpha"});
  window().filter().setFocus();
  type("a");
  QTest::keyClick(&window().filter(), Qt::Key_Escape);
  EXPECT_TRUE(window().filter().hasFocus());
  QTest::keyClick(&window().filter(), Qt::Key_Escape);
  EXPECT_TRUE(table().hasFocus());
}

TEST_F(MainWindowTest, FilterSurvivesAScan) {
  fill({"alpha", "beta"});
  click(1);
  type("alpha");
  writeJob(Kind::userAgent, "alphabet");
  writeJob(Kind::userAgent, "zeta");
  scan();
  EXPECT_EQ(texts(table()), (Names{"alpha", "alphabet"}));
  EXPECT_EQ(program().selection.job()->name, "beta");
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
  type("nothing matches this");
  EXPECT_THAT(texts(table()), IsEmpty());
  EXPECT_EQ(drawnLabel(), "");
}

TEST_F(MainWindowTest, FilterShortcutFocusesItAndSelectsItsText) {
  fill({"alpha"});
  type("old");
  table().setFocus();
  QTest::keyClick(&table(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(window().filter().hasFocus());
  QTest::keyClicks(&window().filter(), QStringLiteral("new"));
  EXPECT_EQ(window().filter().text(), QStringLiteral("new"));
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

}  // namespace
}  // namespace mirvel::ui
