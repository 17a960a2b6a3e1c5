#include <gmock/gmock.h>

#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>
#include <QUrl>
#include <algorithm>
#include <functional>

#include "core/editor/SectionStack.h"
#include "ui/editor/EditTableView.h"
#include "ui/editor/EditorFixture.h"
#include "ui/editor/RunTextField.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class EditFlowTest : public EditorFixture {
 protected:
  ScheduledRuleEditor& ruleEditor() { return *window().details().currentWidget()->findChild<ScheduledRuleEditor*>(); }
  QAbstractButton& namedButton(const char* name) {
    for (auto* found : window().details().currentWidget()->findChildren<QAbstractButton*>()) {
      if (found->accessibleName() == QString::fromUtf8(name)) return *found;
    }
    throw std::runtime_error(name);
  }
  RunTextField& runField() { return dynamic_cast<RunTextField&>(control<QPlainTextEdit>("runValueTextField")); }
  QTableView& tableOf(const char* key) { return *control<EditTableView>(key).findChild<QTableView*>(); }
  static void setCell(QTableView& table, int row, const char* text) {
    table.model()->setData(table.model()->index(row, 0), QLatin1String(text));
  }
  void press(QKeySequence::StandardKey key) { QTest::keySequence(window().focusWidget(), QKeySequence(key)); }
};

TEST_F(EditFlowTest, TheControlsShowTheRecordAndLeavingThemScansNothing) {
  edit({{"ProgramArguments", propertylist::Array{"/bin/ls", "a b"}},
        {"Disabled", true},
        {"KeepAlive", false},
        {"StartInterval", 5},
        {"Unheard", "of"},
        {"Debug", true}});
  EXPECT_FALSE(control<QCheckBox>("Disabled").isChecked());
  EXPECT_TRUE(control<QCheckBox>("KeepAlive").isChecked()) << "the key is there";
  EXPECT_TRUE(control<QCheckBox>("scheduledButton").isChecked());
  EXPECT_EQ(runField().text(), "/bin/ls \"a b\"");
  EXPECT_TRUE(button("Save").isEnabled());
  button("Done").click();
  EXPECT_EQ(program().shell.detail->detailTab(), DetailTab::LaunchdDisplay);
  EXPECT_EQ(fetchQueue.count(), 0U);
}

TEST_F(EditFlowTest, ANumberThatCantBeSavedIsNamedAndKeepsTheEditor) {
  edit({{"StartInterval", 60}, {"UserName", "ada"}});
  const auto number = [&] { return ruleEditor().findChild<QLineEdit*>(); };
  number()->clear();
  control<QCheckBox>("RunAtLoad").setFocus();
  button("Save").click();
  EXPECT_THAT(helpers.requests, IsEmpty());
  ASSERT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(interface.errors.front(),
            std::pair(std::string("Rule 1, “Repeat Interval”, can’t be saved"), std::string("Enter a whole number.")));
  EXPECT_EQ(window().focusWidget(), number());
  EXPECT_FALSE(number()->toolTip().isEmpty()) << "it is marked";
  EXPECT_TRUE(hasChanges());
  EXPECT_EQ(record().startInterval, 60) << "until there is a number, the schedule stays as it was";

  control<QCheckBox>("scheduledButton").click();
  button("Save").click();
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "without the rule everything is valid";
}

TEST_F(EditFlowTest, AnInvalidNumberSurvivesOtherEditsAndUndo) {
  edit({{"StartCalendarInterval", propertylist::Dictionary{{"Minute", 5}}}});
  const auto number = [&] { return ruleEditor().findChild<QLineEdit*>(); };
  number()->setFocus();
  QTest::keyClicks(number(), QStringLiteral("xy"));
  const QLineEdit* const typedIn = number();
  program().shell.detail->updateIcon();
  EXPECT_EQ(number(), typedIn) << "only the icon has changed";
  EXPECT_EQ(window().focusWidget(), typedIn);
  control<QCheckBox>("RunAtLoad").click();
  press(QKeySequence::Undo);
  EXPECT_EQ(record().runAtLoad, std::nullopt);
  EXPECT_EQ(number()->text(), QStringLiteral("5xy"));
  button("Save").click();
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_THAT(helpers.requests, IsEmpty());
  press(QKeySequence::Undo);
  EXPECT_EQ(number()->text(), QStringLiteral("5"));
  EXPECT_FALSE(hasChanges());
  press(QKeySequence::Redo);
  EXPECT_EQ(number()->text(), QStringLiteral("5xy"));
  EXPECT_EQ(record().startCalendarInterval->intervals.front().minute, 5);
}

TEST_F(EditFlowTest, AnInvalidFirstRuleStaysVisible) {
  edit({{"Program", "/bin/ls"}});
  control<QCheckBox>("scheduledButton").click();
  ruleEditor().findChild<QLineEdit*>()->setText(QStringLiteral("x"));
  control<QCheckBox>("RunAtLoad").click();
  program().editing.undo();
  EXPECT_TRUE(control<QCheckBox>("scheduledButton").isChecked());
  EXPECT_EQ(ruleEditor().findChild<QLineEdit*>()->text(), QStringLiteral("x"));
}

TEST_F(EditFlowTest, ARuleShowsEntriesThatItCantExpress) {
  edit({{"StartCalendarInterval", propertylist::Dictionary{{"Month", 3}, {"Minute", 5}}}});
  const auto hasText = [&](const QString& text) {
    const auto labels = ruleEditor().findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->isVisibleTo(&ruleEditor()) && label->text() == text; });
  };
  EXPECT_TRUE(hasText(QStringLiteral("In the job file: Month 3, Minute 5")));
  ruleEditor().findChild<QLineEdit*>()->setText(QStringLiteral("7"));
  EXPECT_TRUE(hasText(QStringLiteral("In the job file: Month 3, Minute 7")));
  EXPECT_EQ(record().startCalendarInterval->intervals.front().month, 3);
}

TEST_F(EditFlowTest, TwoConditionsOfOneNameAreKeptAndNamedAtSaving) {
  const jobfile::StringMap<bool> jobs{{"org.a", false}, {"org.b", true}};
  edit({{"KeepAlive",
         propertylist::Dictionary{{"OtherJobEnabled", propertylist::Dictionary{{"org.a", false}, {"org.b", true}}}}}});
  QTableView& list = tableOf("OtherJobEnabled");
  setCell(list, 1, "org.a");
  EXPECT_EQ(record().keepAlive->otherJobEnabled, jobs) << "neither is lost";
  control<QCheckBox>("RunAtLoad").click();
  program().editing.undo();
  const QModelIndex second = list.model()->index(1, 0);
  EXPECT_EQ(second.data().toString(), QStringLiteral("org.a"));
  EXPECT_EQ(second.data(Qt::CheckStateRole).toInt(), Qt::Checked);
  button("Save").click();
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_THAT(interface.errors, testing::ElementsAre(std::pair(std::string("“OtherJobEnabled” can’t be saved"),
                                                               std::string("More than one row is called “org.a”"))));
  EXPECT_EQ(window().focusWidget(), &list);
  EXPECT_EQ(list.currentIndex().row(), 1);
  setCell(list, 1, "org.c");
  EXPECT_EQ(record().keepAlive->otherJobEnabled, (jobfile::StringMap<bool>{{"org.a", false}, {"org.c", true}}));
  button("Save").click();
  EXPECT_THAT(helpers.requests, SizeIs(1));
}

TEST_F(EditFlowTest, SavingAndLeavingReturnTheFocusToTheList) {
  edit({{"Program", "/bin/ls"}});
  EXPECT_EQ(window().focusWidget(), &control<QLineEdit>("Label"));
  QTest::keyClicks(window().focusWidget(), QStringLiteral("x"));
  EXPECT_EQ(record().name, "ax") << "typing doesn't search the list";
  QTest::keyClick(window().focusWidget(), Qt::Key_S, Qt::ControlModifier);
  ASSERT_THAT(helpers.requests, SizeIs(1));
  helpers.requests.front().reply({});
  EXPECT_TRUE(table().hasFocus()) << "after saving";
  settle();

  QTest::keyClick(&table(), Qt::Key_E, Qt::ControlModifier);
  button("Done").setFocus();
  button("Done").click();
  EXPECT_TRUE(table().hasFocus()) << "after leaving";
}

TEST_F(EditFlowTest, AnotherModeGetsTheFocusOfTheDetails) {
  edit({{"Program", "/bin/ls"}, {"StartInterval", 60}});
  for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_4, Qt::Key_3}) {
    program().currentMode.view()->select(program().catalogue.jobs().front()->url);
    control<QPlainTextEdit>("notesTextField").setFocus();
    QTest::keyClick(window().focusWidget(), key, Qt::ControlModifier);
    ASSERT_NE(window().focusWidget(), nullptr) << key;
    EXPECT_EQ(static_cast<int>(program().currentMode.chosen()), key - Qt::Key_1);
    EXPECT_FALSE(window().details().isAncestorOf(window().focusWidget())) << key;
    EXPECT_TRUE(window().focusWidget()->isVisible()) << key;
    settle();
  }
}

TEST_F(EditFlowTest, ANoteThatIsBeingTypedKeepsTheFocusWhenItsJobChanges) {
  edit({{"Program", "/bin/ls"}});
  button("Done").click();
  for (const char* filter : {"", "a"}) {
    window().filter().setText(QLatin1String(filter));
    auto& note = control<QPlainTextEdit>("notesTextField");
    note.setFocus();
    note.selectAll();
    QTest::keyClicks(&note, QStringLiteral("onthree"));
    for (int i = 0; i < 5; ++i) QTest::keyClick(&note, Qt::Key_Left);
    writeJob(Kind::userAgent, "a", {{"Program", *filter == '\0' ? "/bin/cat" : "/bin/dd"}});
    scan();
    testdata::settle();
    ASSERT_NE(QApplication::focusWidget(), nullptr) << filter;
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("e "));
    EXPECT_EQ(control<QPlainTextEdit>("notesTextField").toPlainText(), QStringLiteral("one three")) << filter;
    EXPECT_EQ(program().notes.note(program().selection.job()->url), "one three") << filter;
  }
}

TEST_F(EditFlowTest, UndoOfARuleUpdatesItsControls) {
  edit({{"StartInterval", 60}});
  auto* const number = ruleEditor().findChild<QLineEdit*>();
  auto* const unit = ruleEditor().findChildren<QComboBox*>().at(1);
  number->setText(QStringLiteral("x"));
  clock.now += 5;
  unit->setFocus();
  unit->setCurrentIndex(unit->currentIndex() + 1);
  namedButton("Add Rule").click();
  ASSERT_EQ(ruleEditor().editor().numberOfRows(), 2U);
  unit->setFocus();
  for (const auto& [rows, text] : {std::pair(1U, "x"), {1U, "x"}, {1U, "1"}}) {
    program().editing.undo();
    testdata::settle();
    EXPECT_EQ(ruleEditor().editor().numberOfRows(), rows);
    EXPECT_EQ(ruleEditor().findChild<QLineEdit*>(), number);
    EXPECT_EQ(utf8(number->text()), text);
    EXPECT_EQ(window().focusWidget(), unit);
  }
  EXPECT_FALSE(hasChanges());
}

TEST_F(EditFlowTest, DetailsAreUpdatedInTheirWidgets) {
  const auto job = [](const char* program, int crashed, const char* path, int interval) {
    return propertylist::Dictionary{
        {"Program", program},
        {"KeepAlive",
         propertylist::Dictionary{{"Crashed", crashed != 0}, {"PathState", propertylist::Dictionary{{path, true}}}}},
        {"StartInterval", interval}};
  };
  edit(job("/bin/ls", 1, "/one", 60));
  button("Done").click();
  const auto texts = [&] { return window().details().currentWidget()->findChildren<QTextEdit*>(); };
  const auto shown = [&] {
    std::vector<std::string> result;
    for (const auto* text : texts()) {
      if (text->isVisible()) result.push_back(utf8(text->toPlainText()));
    }
    return result;
  };
  const auto before = texts();
  ASSERT_THAT(shown(), testing::ElementsAre("a", "Ada Lovelace", "/bin/ls", "/one : On", "Every minute"));
  before.at(2)->setFocus();
  QTextCursor selection(before.at(0)->document());
  selection.select(QTextCursor::Document);
  before.at(0)->setTextCursor(selection);
  program().shell.detail->updateIcon();
  writeJob(Kind::userAgent, "a", job("/bin/dd", 0, "/two", 120));
  scan();
  testdata::settle();
  EXPECT_EQ(texts(), before);
  EXPECT_THAT(shown(), testing::ElementsAre("a", "Ada Lovelace", "/bin/dd", "/two : On", "Every 2 minutes"));
  EXPECT_EQ(window().focusWidget(), before.at(2));
  EXPECT_EQ(utf8(before.at(0)->textCursor().selectedText()), "a");
}

TEST_F(EditFlowTest, WithoutItsLastRuleAScheduleIsOff) {
  edit({{"StartInterval", 60}});
  namedButton("Remove Rule").click();
  EXPECT_EQ(record().startInterval, std::nullopt);
  EXPECT_FALSE(control<QCheckBox>("scheduledButton").isChecked());
  control<QCheckBox>("scheduledButton").click();
  EXPECT_EQ(record().startInterval, 30) << "it begins with a new rule";
}

TEST_F(EditFlowTest, EachClickOfTheScheduleBoxIsOneStep) {
  edit({{"Program", "/bin/ls"}});
  auto& box = control<QCheckBox>("scheduledButton");
  for (int i = 0; i < 3; ++i) box.click();
  auto* const number = ruleEditor().findChild<QLineEdit*>();
  number->selectAll();
  QTest::keyClicks(number, QStringLiteral("40"));
  ASSERT_EQ(record().startInterval, 40);
  for (const std::optional<std::int64_t> interval : {std::optional<std::int64_t>(30), {}, {30}, {}}) {
    EXPECT_TRUE(hasChanges());
    program().editing.undo();
    EXPECT_EQ(record().startInterval, interval);
    EXPECT_EQ(box.isChecked(), interval.has_value());
  }
  EXPECT_FALSE(hasChanges());
}

TEST_F(EditFlowTest, AClickElsewhereLeavesTheRulesInTheOrderInWhichTheyWereEntered) {
  edit({{"StartCalendarInterval", propertylist::Dictionary{{"Weekday", 1}, {"Hour", 9}, {"Minute", 0}}}});
  namedButton("Add Rule").click();
  constexpr std::size_t everyDay = 2;
  ruleEditor().editor().chooseChild(1, 0, everyDay);
  const auto entered = ruleEditor().editor().rows();
  ASSERT_EQ(entered.size(), 2U);
  control<QCheckBox>("KeepAlive").click();
  EXPECT_TRUE(ruleEditor().editor().rows() == entered);
  program().editing.undo();
  EXPECT_TRUE(ruleEditor().editor().rows() == entered);
  const auto schedule = record().startCalendarInterval;
  for (const char* box : {"scheduledButton", "KeepAlive", "scheduledButton"}) control<QCheckBox>(box).click();
  EXPECT_TRUE(ruleEditor().editor().rows() == entered) << "a schedule that is switched off keeps its rules";
  EXPECT_EQ(record().startCalendarInterval, schedule);
}

TEST_F(EditFlowTest, DiscardedInputDoesntComeBack) {
  edit({{"ProgramArguments", propertylist::Array{"/usr/bin/perl", "x.pl"}}, {"KeepAlive", true}});
  runField().selectAll();
  QTest::keyClicks(&runField(), QStringLiteral("perl x.pl"));
  QTest::keyClick(&runField(), Qt::Key_Return);
  EXPECT_EQ(record().run, "/usr/bin/perl x.pl");
  EXPECT_EQ(runField().text(), "perl x.pl") << "the typed text is kept";
  EXPECT_TRUE(window().isWindowModified());
  namedButton("Add – OtherJobEnabled").click();
  button("Discard Changes").click();
  EXPECT_FALSE(window().isWindowModified());
  QTest::keyClick(&window(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_EQ(runField().text(), "/usr/bin/perl x.pl");
  EXPECT_EQ(tableOf("OtherJobEnabled").model()->rowCount(), 0);
}

TEST_F(EditFlowTest, AJobThatTheModeDoesntShowCanBeEditedAfterAScan) {
  edit({{"Program", "/bin/ls"}});
  button("Done").click();
  program().mainWindow.switchMode(Mode::Timeline);
  scan();
  program().currentMode.select(program().catalogue.jobs().front());
  program().shell.detail->showEdit();
  writeJob(Kind::userAgent, "b");
  scan();
  ASSERT_EQ(program().shell.detail->detailTab(), DetailTab::LaunchdEdit);
  control<QCheckBox>("KeepAlive").click();
  EXPECT_TRUE(tableOf("PathState").isVisible());
  auto& popUp = control<QComboBox>("forPopUpButton");
  popUp.setCurrentIndex(popUp.findData(Kind(Kind::localDaemon).rawValue()));
  EXPECT_TRUE(control<QLineEdit>("UserName").isEnabled());
}

TEST_F(EditFlowTest, ACommandKeepsTheLineEndsAndBlanksWithinItsQuotes) {
  const std::string script = "a\u00a0b\nc d";
  edit({{"ProgramArguments", propertylist::Array{"/bin/sh", "-c", script}}});
  runField().moveCursor(QTextCursor::End);
  QTest::keyClicks(&runField(), QStringLiteral(" x"));
  EXPECT_EQ(record().run, "/bin/sh -c \"" + script + "\" x");
}

TEST_F(EditFlowTest, ACommandOfMegabytesIsShownShortenedAndKept) {
  const std::string command(4'000'000, 'x');
  edit({{"Program", command}});
  EXPECT_LT(runField().text().size(), 10'000U);
  EXPECT_TRUE(runField().isReadOnly());
  runField().insertCommand("/bin/ls");
  control<QCheckBox>("RunAtLoad").click();
  EXPECT_EQ(record().run, command);
}

TEST_F(EditFlowTest, ConditionsThatWereClearedComeBackEmpty) {
  edit({{"KeepAlive",
         propertylist::Dictionary{{"Crashed", true}, {"PathState", propertylist::Dictionary{{"/tmp/x", true}}}}}});
  auto& keepAlive = control<QCheckBox>("KeepAlive");
  keepAlive.click();
  keepAlive.click();
  EXPECT_EQ(record().keepAlive->bool_, true);
  EXPECT_EQ(control<QCheckBox>("Crashed").checkState(), Qt::PartiallyChecked) << "absent";
  for (const char* key : {"PathState", "OtherJobEnabled"}) EXPECT_EQ(tableOf(key).model()->rowCount(), 0) << key;
}

TEST_F(EditFlowTest, UndoRedoIconsAndScansLeaveControlsCursorsAndSelectedRowsAlone) {
  edit({{"Program", "/bin/ls"},
        {"KeepAlive", propertylist::Dictionary{{"PathState", propertylist::Dictionary{{"/a", true}, {"/b", true}}}}}});
  QTableView& paths = tableOf("PathState");
  paths.setCurrentIndex(paths.model()->index(1, 0));
  auto& name = control<QLineEdit>("Label");
  name.setFocus();
  name.setText(QStringLiteral("one two"));
  clock.now += 5;
  name.setCursorPosition(3);
  control<QCheckBox>("RunAtLoad").click();
  window().resize(700, 300);
  testdata::settle();
  auto* const bar = window().details().currentWidget()->findChild<QScrollArea*>()->verticalScrollBar();
  bar->setValue(40);
  const struct {
    const char* event;
    std::function<void()> happens;
  } table[] = {{"undo", [&] { program().editing.undo(); }},
               {"redo", [&] { program().editing.redo(); }},
               {"an icon", [&] { program().shell.detail->updateIcon(); }},
               {"details", [&] { program().shell.detail->updateDetail(); }},
               {"a saved file and its scan", [&] {
                  program().editing.setUnsavedChanges(false);
                  writeJob(Kind::userAgent, "a",
                           {{"Program", "/bin/dd"},
                            {"KeepAlive", propertylist::Dictionary{
                                              {"PathState", propertylist::Dictionary{{"/a", true}, {"/b", true}}}}}});
                  program().shell.detail->showEdit();
                }}};
  for (const auto& row : table) {
    row.happens();
    testdata::settle();
    ASSERT_EQ(&control<QLineEdit>("Label"), &name) << row.event;
    EXPECT_EQ(QApplication::focusWidget(), &name) << row.event;
    EXPECT_EQ(name.cursorPosition(), 3) << row.event;
    EXPECT_EQ(bar->value(), 40) << row.event;
    ASSERT_EQ(&tableOf("PathState"), &paths) << row.event;
    EXPECT_TRUE(paths.selectionModel()->isRowSelected(1)) << row.event;
  }
}

TEST_F(EditFlowTest, ARowBeingTypedSurvivesUndoElsewhereAndIsUndoneSeparately) {
  edit({{"KeepAlive",
         propertylist::Dictionary{{"OtherJobEnabled", propertylist::Dictionary{{"a", true}, {"c", true}}}}}});
  clickBox(control<QCheckBox>("RunAtLoad"));
  namedButton("Add – OtherJobEnabled").click();
  QWidget* const field = QApplication::focusWidget();
  ASSERT_NE(qobject_cast<QLineEdit*>(field), nullptr);
  press(QKeySequence::Undo);
  EXPECT_EQ(record().runAtLoad, std::nullopt);
  EXPECT_EQ(QApplication::focusWidget(), field) << "the new row still has no name";
  QTest::keyClicks(field, QStringLiteral("b"));
  EXPECT_EQ(record().keepAlive->otherJobEnabled, (jobfile::StringMap<bool>{{"a", true}, {"b", true}, {"c", true}}));
  press(QKeySequence::Undo);
  EXPECT_EQ(record().keepAlive->otherJobEnabled, (jobfile::StringMap<bool>{{"a", true}, {"c", true}}));
  QTableView& jobs = tableOf("OtherJobEnabled");
  EXPECT_EQ(jobs.model()->rowCount(), 2);
  jobs.setFocus();
  jobs.setCurrentIndex(jobs.model()->index(0, 0));
  for (int i = 0; i < 2; ++i) QTest::keyClick(&jobs, Qt::Key_Delete);
  press(QKeySequence::Undo);
  EXPECT_EQ(record().keepAlive->otherJobEnabled, (jobfile::StringMap<bool>{{"c", true}})) << "two steps";
}

TEST_F(EditFlowTest, DeletedKeysAreGoneAndARestoredSectionKeepsItsPlace) {
  edit({{"Program", "/bin/ls"}, {"Debug", true}, {"Unheard", "of"}});
  namedButton("Delete – Unheard").click();
  EXPECT_EQ(record().unknownKeys, std::vector<std::string>());
  namedButton("Delete – Debug").click();
  EXPECT_EQ(record().debug, std::nullopt);
  const auto section = [&](StackSection id) {
    const auto name = QStringLiteral("section%1").arg(static_cast<int>(id));
    auto* const found = window().details().currentWidget()->findChild<QWidget*>(name);
    return found && found->isVisible() ? found : nullptr;
  };
  program().shell.detail->updateDetail();
  testdata::settle();
  EXPECT_EQ(section(StackSection::Deprecated), nullptr);
  program().editing.undo();
  testdata::settle();
  QWidget* const deprecated = section(StackSection::Deprecated);
  ASSERT_NE(deprecated, nullptr);
  EXPECT_LT(deprecated->y(), section(StackSection::Notes)->y());
  EXPECT_GT(deprecated->y(), section(StackSection::Root)->y());
  button("Delete").setFocus();
  QTest::keyClick(&button("Delete"), Qt::Key_Tab);
  EXPECT_EQ(window().focusWidget(), &control<QPlainTextEdit>("notesTextField"));
}

TEST_F(EditFlowTest, TabGoesFromABoxToItsConditions) {
  edit({{"KeepAlive", true}});
  control<QCheckBox>("RunAtLoad").setFocus();
  for (const char* next : {"KeepAlive", "Crashed", "SuccessfulExit"}) {
    QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(window().focusWidget()->objectName(), QLatin1String(next));
  }
  control<QCheckBox>("StartOnMount").setFocus();
  QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(window().focusWidget()->objectName(), QStringLiteral("scheduledButton"));
}

TEST_F(EditFlowTest, ANoteIsNoEditOfTheJobAndHasItsOwnUndo) {
  edit({{"Program", "/bin/ls"}});
  auto& note = control<QPlainTextEdit>("notesTextField");
  note.setFocus();
  QTest::keyClicks(&note, QStringLiteral("one"));
  QTest::keyClick(&note, Qt::Key_Tab);
  QTest::keyClick(&note, Qt::Key_Return);
  EXPECT_FALSE(hasChanges());
  EXPECT_EQ(program().notes.note(program().selection.job()->url), "one\t\n");
  press(QKeySequence::Undo);
  EXPECT_NE(note.toPlainText(), QStringLiteral("one\t\n"));
  EXPECT_EQ(window().focusWidget(), &note);
  QTest::keyClick(&note, Qt::Key_Backtab);
  EXPECT_NE(window().focusWidget(), &note) << "the focus can leave";
  note.setPlainText(QStringLiteral("new"));
  button("Done").click();
  EXPECT_EQ(control<QPlainTextEdit>("notesTextField").toPlainText(), QStringLiteral("new"));
}

TEST_F(EditFlowTest, OnlyDaemonsHaveAUserAndThePopUpChoosesTheKind) {
  edit({{"Program", "/bin/ls"}});
  auto& popUp = control<QComboBox>("forPopUpButton");
  EXPECT_EQ(popUp.count(), 5);
  const auto canBeChosen = [&popUp](int item) {
    return popUp.model()->flags(popUp.model()->index(item, 0)).testFlag(Qt::ItemIsEnabled);
  };
  EXPECT_TRUE(canBeChosen(2));
  EXPECT_FALSE(canBeChosen(4)) << "system daemons";
  EXPECT_FALSE(control<QLineEdit>("UserName").isEnabled());
  popUp.setFocus();
  QTest::keyClick(&popUp, Qt::Key_Down);
  QTest::keyClick(&popUp, Qt::Key_Down);
  EXPECT_EQ(program().selection.job()->kind, Kind::localDaemon);
  EXPECT_TRUE(control<QLineEdit>("UserName").isEnabled());
  QTest::keyClicks(&control<QLineEdit>("UserName"), QStringLiteral("ada"));
  EXPECT_EQ(record().userName, "ada");
}

TEST_F(EditFlowTest, FilesAreDroppedAndChosenIntoTheCommandAndMissingOnesAreRed) {
  edit({{"Program", "/bin/ls"}});
  const auto isRed = [&] { return runField().palette().color(QPalette::Text) == invalidData(QApplication::palette()); };
  const auto check = [&] {
    fileQueue.runAll();
    queue.runDue();
    return isRed();
  };
  EXPECT_FALSE(check());
  QMimeData drag;
  drag.setUrls({QUrl::fromLocalFile(QStringLiteral("/no such/file"))});
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &drag, Qt::LeftButton, {});
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &drag, Qt::LeftButton, {});
  runField().setText("");
  QCoreApplication::sendEvent(runField().viewport(), &enter);
  QCoreApplication::sendEvent(runField().viewport(), &drop);
  EXPECT_EQ(runField().text(), "\"/no such/file\"");
  EXPECT_EQ(record().run, "\"/no such/file\"");
  EXPECT_TRUE(check());
  EXPECT_EQ(utf8(runField().accessibleDescription()), "Not found: /no such/file");

  runField().setText("");
  interface.openPath = folder.write("my script.sh", "#!/bin/sh\n");
  auto* const menuButton = runField().parentWidget()->findChild<QToolButton*>();
  menuButton->click();
  choose(*menuButton->findChild<QMenu*>(), "Choose…");
  EXPECT_THAT(record().run, testing::EndsWith("my script.sh\""));
  EXPECT_FALSE(check());
  runField().insertCommand("x");
  EXPECT_THAT(record().run, testing::EndsWith("my script.sh\" x"));
  program().editing.undo();
  EXPECT_THAT(record().run, testing::EndsWith("my script.sh\"")) << "each choice is a step of its own";
  program().editing.undo();
  EXPECT_EQ(record().run, "");
}

TEST_F(EditFlowTest, AFailedSaveKeepsWhatWasTypedAndAnotherSavesIt) {
  edit({{"Program", "/bin/ls"}});
  QTest::keyClicks(&control<QLineEdit>("Label"), QStringLiteral("x"));
  button("Save").click();
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_FALSE(button("Save").isEnabled());
  QTest::keyClicks(&control<QLineEdit>("Label"), QStringLiteral("lost"));
  EXPECT_EQ(record().name, "ax") << "an edit that no save would write is rejected";
  click(0);
  EXPECT_THAT(interface.sheets, IsEmpty()) << "rejected without a question while the save runs";
  helpers.requests.front().reply(
      {{"error", propertylist::Dictionary{{"domain", "app.mirvel"}, {"code", 5}, {"message", "full"}}}});
  EXPECT_TRUE(hasChanges());
  EXPECT_EQ(control<QLineEdit>("Label").text(), QStringLiteral("ax"));
  EXPECT_TRUE(button("Save").isEnabled());
  QTest::keyClicks(&control<QLineEdit>("Label"), QStringLiteral("y"));
  EXPECT_EQ(record().name, "axy");

  button("Save").click();
  ASSERT_THAT(helpers.requests, SizeIs(2));
  helpers.requests.back().reply({});
  EXPECT_FALSE(hasChanges());
  EXPECT_EQ(program().shell.detail->detailTab(), DetailTab::LaunchdDisplay);
  EXPECT_EQ(fetchQueue.count(), 1U);
}

}  // namespace
}  // namespace mirvel::ui
