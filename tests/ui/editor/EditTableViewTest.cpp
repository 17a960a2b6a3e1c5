#include "ui/editor/EditTableView.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QTableView>
#include <QTest>
#include <QToolButton>

#include "core/schedule/NumberText.h"
#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {
namespace {

using Texts = std::vector<std::string>;
using Map = jobfile::StringMap<bool>;
using Adding = TableFormat::Adding;

constexpr TableFormat::Column textColumn[] = {{}};
constexpr TableFormat::Column pathColumn[] = {{.isPath = true}};
constexpr TableFormat::Column fixedColumn[] = {{.isEditable = false}};
constexpr TableFormat::Text nameTitle = [](const Localize& localize) { return localize.name(); };
constexpr TableFormat::Column limitColumns[] = {{.title = nameTitle, .isEditable = false},
                                                {.title = nameTitle, .isNumber = true}};
constexpr TableFormat::Column tripleColumns[] = {{.title = nameTitle}, {.title = nameTitle}, {.title = nameTitle}};
constexpr TableFormat::Column variableColumns[] = {{.title = nameTitle, .placeholder = nameTitle},
                                                   {.title = nameTitle}};
constexpr TableFormat::MenuItem sessions[] = {{"Aqua", "a"}, {"Background", "b"}, {"LoginWindow", "l"}};

constexpr TableFormat strings{.columns = textColumn};
constexpr TableFormat boxes{.columns = textColumn, .hasBox = true, .isDictionary = true};
constexpr TableFormat boxPaths{
    .columns = pathColumn, .hasBox = true, .isDictionary = true, .adding = Adding::FilePanel};
constexpr TableFormat files{.columns = pathColumn, .adding = Adding::FilePanel};
constexpr TableFormat folders{.columns = pathColumn, .adding = Adding::FolderPanel};
constexpr TableFormat types{.columns = fixedColumn, .adding = Adding::Menu, .menu = sessions};
constexpr TableFormat limits{.columns = limitColumns, .isDictionary = true, .adding = Adding::Menu, .menu = sessions};
constexpr TableFormat triples{.columns = tripleColumns, .isDictionary = true};
constexpr TableFormat variables{.columns = variableColumns, .isDictionary = true, .hasVariables = true};

class EditTableViewTest : public testdata::ProgramFixture {
 protected:
  void show(const TableFormat& format, const std::vector<TableRow>& rows) {
    changes.clear();
    table = std::make_unique<EditTableView>(foundation, platform, numbers, format, "PathState");
    table->changed = [this](Editing::Step, const std::string&) {
      std::string text;
      for (const auto& row : table->rows()) text += (text.empty() ? "" : " ") + row.cells[0] + (row.isOn ? "+" : "-");
      changes.push_back(text);
    };
    table->fill(rows);
    table->resize(300, table->sizeHint().height());
    table->show();
    table->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(table.get()));
    table->setFocus();
  }
  QTableView& list() { return *table->findChild<QTableView*>(); }
  QModelIndex cell(int row, int column = 0) { return list().model()->index(row, column); }
  QToolButton& button(const char* name) {
    for (auto* each : table->findChildren<QToolButton*>()) {
      if (each->accessibleName() == qt(name)) return *each;
    }
    throw std::runtime_error(name);
  }
  QToolButton& addButton() { return button("Add – PathState"); }
  QToolButton& deleteButton() { return button("Delete – PathState"); }
  void click(QToolButton& which, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(&which, Qt::LeftButton, modifiers);
    testdata::settle();
  }
  void press(Qt::Key key) {
    QTest::keyClick(QApplication::focusWidget(), key);
    testdata::settle();
  }
  static void type(const char* text) { QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text)); }
  static bool isEditing() { return qobject_cast<QLineEdit*>(QApplication::focusWidget()); }
  /// Chooses the first item of the menu that is open.
  static void chooseFirst() {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    menu->actions().front()->trigger();
    menu->close();
    testdata::settle();
  }
  Texts shown() {
    Texts result;
    for (int row = 0; row < list().model()->rowCount(); ++row) result.push_back(utf8(cell(row).data().toString()));
    return result;
  }

  const Scheduled::NumberText numbers{"en"};
  Texts changes = {};  ///< the rows after each change, as "a+ b-" by their boxes
  std::unique_ptr<EditTableView> table;
};

TEST_F(EditTableViewTest, EachKeystrokeIsReportedAndReturnEndsEditing) {
  show(strings, rowsOf(Texts{"a", "b"}));
  list().setCurrentIndex(cell(1));
  press(Qt::Key_Return);
  ASSERT_TRUE(isEditing());
  type("xy");
  EXPECT_EQ(changes, (Texts{"a- x-", "a- xy-"}));
  press(Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), &list());
  EXPECT_EQ(shown(), (Texts{"a", "xy"}));
  EXPECT_EQ(changes.size(), 2U) << "ending the edit isn't a change";
}

TEST_F(EditTableViewTest, EscapeBringsTheOldTextBack) {
  show(strings, rowsOf(Texts{"a"}));
  list().setCurrentIndex(cell(0));
  press(Qt::Key_F2);
  type("x");
  press(Qt::Key_Escape);
  EXPECT_EQ(shown(), (Texts{"a"}));
  EXPECT_EQ(changes, (Texts{"x-", "a-"}));
}

TEST_F(EditTableViewTest, AnAddedRowWithoutATextIsEditedAtOnce) {
  show(boxes, rowsOf(Map{{"a", false}}));
  click(addButton());
  ASSERT_TRUE(isEditing());
  EXPECT_EQ(changes, Texts()) << "a row without text isn't reported";
  type("n");
  EXPECT_EQ(changes, (Texts{"a- n+"}));
  click(addButton());
  ASSERT_TRUE(isEditing());
  EXPECT_EQ(shown(), (Texts{"a", "n", ""})) << "the text being typed is kept";
  press(Qt::Key_Return);
  press(Qt::Key_Insert);
  EXPECT_TRUE(isEditing());
  EXPECT_EQ(list().currentIndex().row(), 3);
}

TEST_F(EditTableViewTest, PathsComeFromAPanel) {
  const struct {
    TableFormat format;
    const char* chosen;
    Qt::KeyboardModifiers modifiers;
    bool isFolder;
    Texts rows;
  } rows[] = {
      {files, "/b c", Qt::NoModifier, false, {"/a", "/b c"}},
      {boxPaths, "/b", Qt::AltModifier, false, {"/a", "/b"}},
      {folders, "/b", Qt::NoModifier, true, {"/a", "/b"}},
      {folders, nullptr, Qt::AltModifier, true, {"/a"}},
  };
  for (const auto& row : rows) {
    interface.openPanels.clear();
    interface.openPath = row.chosen ? std::optional<std::filesystem::path>(row.chosen) : std::nullopt;
    show(row.format, {{.isOn = true, .cells = {"/a"}}});
    click(addButton(), row.modifiers);
    ASSERT_EQ(interface.openPanels.size(), 1U);
    EXPECT_EQ(interface.openPanels[0].choosesFolders, row.isFolder);
    EXPECT_EQ(interface.openPanels[0].showsHiddenFiles, row.modifiers != Qt::NoModifier);
    EXPECT_EQ(shown(), row.rows);
    EXPECT_EQ(changes.size(), row.chosen ? 1U : 0U);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(list().selectionModel()->selectedRows().size(), row.chosen ? 1 : 0);
    EXPECT_TRUE(!row.chosen || list().selectionModel()->isRowSelected(1));
  }
}

TEST_F(EditTableViewTest, EachSessionTypeIsOfferedOnce) {
  show(types, rowsOf(Texts{"Background"}));
  click(addButton());
  ASSERT_TRUE(QApplication::activePopupWidget());
  EXPECT_FALSE(qobject_cast<QMenu*>(QApplication::activePopupWidget())->actions().at(1)->isEnabled());
  chooseFirst();
  EXPECT_EQ(shown(), (Texts{"Background", "Aqua"}));
  for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return}) {
    press(key);
    EXPECT_FALSE(isEditing()) << "only the menu sets its text";
  }
}

TEST_F(EditTableViewTest, TheDeleteKeyDeletesTheRowAndNothingElse) {
  show(strings, rowsOf(Texts{"a", "b", "c"}));
  int deletedJobs = 0;
  QShortcut job(QKeySequence(QKeySequence::Delete), table.get());
  QObject::connect(&job, &QShortcut::activated, [&] { ++deletedJobs; });
  EXPECT_FALSE(deleteButton().isEnabled());
  press(Qt::Key_Delete);
  EXPECT_TRUE(changes.empty()) << "no row is selected";

  list().setCurrentIndex(cell(1));
  EXPECT_TRUE(deleteButton().isEnabled());
  press(Qt::Key_Delete);
  EXPECT_EQ(changes, (Texts{"a- c-"}));
  press(Qt::Key_F2);
  ASSERT_TRUE(isEditing());
  press(Qt::Key_Delete);
  EXPECT_EQ(changes.back(), "a- -") << "while editing it deletes a character";
  EXPECT_EQ(deletedJobs, 0);

  click(deleteButton());
  EXPECT_EQ(shown(), (Texts{"a"})) << "the button deletes the row being edited";
  click(deleteButton());
  EXPECT_EQ(changes.back(), "");
  EXPECT_FALSE(deleteButton().isEnabled());
}

TEST_F(EditTableViewTest, TheOnlyRowCanBeDeletedWithoutAMouse) {
  show(boxes, rowsOf(Map{{"a", true}}));
  addButton().setFocus();
  QTest::keyClick(&addButton(), Qt::Key_Backtab);
  ASSERT_EQ(QApplication::focusWidget(), &list());
  press(Qt::Key_Delete);
  EXPECT_EQ(changes, (Texts{""}));
}

TEST_F(EditTableViewTest, BoxesAreTickedByKeyAndByClick) {
  show(boxPaths, rowsOf(Map{{"/a", false}, {"/b", true}}));
  list().setCurrentIndex(cell(0));
  press(Qt::Key_Space);
  EXPECT_EQ(changes, (Texts{"/a+ /b+"}));
  const QRect second = list().visualRect(cell(1));
  QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, QPoint(second.left() + 10, second.center().y()));
  EXPECT_EQ(changes, (Texts{"/a+ /b+", "/a+ /b-"}));
}

TEST_F(EditTableViewTest, ToolTipsShowTheLiteralText) {
  show(strings, rowsOf(Texts{"a & b", "<b>bold</b>"}));
  EXPECT_EQ(cell(0).data(Qt::ToolTipRole).toString(), QStringLiteral("a & b"));
  EXPECT_EQ(cell(1).data(Qt::ToolTipRole).toString(), QStringLiteral("<qt>&lt;b&gt;bold&lt;/b&gt;</qt>"));
  list().setCurrentIndex(cell(1));
  press(Qt::Key_F2);
  type("new");
  press(Qt::Key_Return);
  EXPECT_EQ(cell(1).data(Qt::ToolTipRole).toString(), QStringLiteral("new"));
}

TEST_F(EditTableViewTest, TheListGrowsFromFourRowsToEight) {
  const auto heightOf = [&](std::size_t rows) {
    show(strings, rowsOf(Texts(rows, "text")));
    return list().height();
  };
  const int four = heightOf(4);
  EXPECT_EQ(heightOf(1), four);
  EXPECT_EQ(heightOf(9), heightOf(8));
  EXPECT_NEAR(heightOf(8), 2 * four, 2 * list().frameWidth());
  EXPECT_GE(four, 4 * list().rowHeight(0)) << "four rows are fully visible";
}

TEST_F(EditTableViewTest, TabVisitsTheCellsAndLeavesAfterTheLast) {
  show(triples, {{.cells = {"a", "1", "x"}}, {.cells = {"b", "2", "y"}}});
  list().setCurrentIndex(cell(0, 1));
  press(Qt::Key_Return);
  std::string path;
  for (int i = 0; i < 6 && isEditing(); ++i) {
    path += utf8(list().currentIndex().data().toString());
    press(Qt::Key_Tab);
  }
  EXPECT_EQ(path, "1xb2y");
  EXPECT_FALSE(isEditing());
  list().setCurrentIndex(cell(0, 1));
  press(Qt::Key_Return);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
  EXPECT_TRUE(isEditing());
  EXPECT_EQ(list().currentIndex(), cell(0, 0));
}

TEST_F(EditTableViewTest, AMenuGivesTheNameAndTheValueIsTypedAtOnce) {
  show(limits, {});
  click(addButton());
  chooseFirst();
  ASSERT_TRUE(isEditing());
  type("7");
  EXPECT_EQ(table->rows(), (std::vector<TableRow>{{false, {"Aqua", "7"}}}));
}

TEST_F(EditTableViewTest, HeadersSortWhatIsShownAndEditsReachTheRightRow) {
  show(triples, {{.cells = {"b", "1", ""}}, {.cells = {"a", "2", ""}}});
  EXPECT_TRUE(list().horizontalHeader()->isVisible());
  EXPECT_EQ(shown(), (Texts{"b", "a"})) << "in the order of the file until a header is clicked";
  list().setCurrentIndex(cell(0));
  list().sortByColumn(0, Qt::AscendingOrder);
  EXPECT_EQ(shown(), (Texts{"a", "b"}));
  EXPECT_EQ(list().currentIndex().row(), 1) << "the selection moves along";
  EXPECT_TRUE(changes.empty());
  press(Qt::Key_F2);
  type("c");
  EXPECT_EQ(changes, (Texts{"c- a-"}));
}

TEST_F(EditTableViewTest, RefillingKeepsTheSelectionAndTheCellThatIsEdited) {
  show(strings, rowsOf(Texts{"a", "b", "c"}));
  list().setCurrentIndex(cell(1));
  press(Qt::Key_F2);
  const QWidget* const editor = QApplication::focusWidget();
  const struct {
    Texts rows;
    const char* edited;
  } refills[] = {{{"a", "b", "c"}, "b"},
                 {{"x", "b", "c"}, "b"},
                 {{"x", "y", "c"}, "y"},
                 {{"x", "y"}, "y"},
                 {{"x", "y", "z"}, "y"}};
  for (const auto& refill : refills) {
    table->fill(rowsOf(refill.rows));
    EXPECT_EQ(shown(), refill.rows);
    EXPECT_EQ(QApplication::focusWidget(), editor) << refill.edited;
    EXPECT_EQ(qobject_cast<const QLineEdit*>(editor)->text(), QLatin1String(refill.edited));
    EXPECT_TRUE(list().selectionModel()->isRowSelected(1));
  }
  EXPECT_TRUE(changes.empty());
}

TEST_F(EditTableViewTest, EscapeDoesntTakeBackARefill) {
  show(strings, rowsOf(Texts{"a", "b"}));
  list().setCurrentIndex(cell(0));
  press(Qt::Key_F2);
  table->fill(rowsOf(Texts{"x", "b"}));
  press(Qt::Key_Escape);
  EXPECT_EQ(shown(), (Texts{"x", "b"}));
  press(Qt::Key_F2);
  type("y");
  press(Qt::Key_Escape);
  EXPECT_EQ(shown(), (Texts{"x", "b"}));
  EXPECT_EQ(changes, (Texts{"y- b-", "x- b-"})) << "only what was typed";
}

TEST_F(EditTableViewTest, ManyRowsAreReplacedInLinearTime) {
  show(strings, rowsOf(Texts(200'000, "a")));
  Texts others;
  for (int i = 0; i < 200'000; ++i) others.push_back("b" + std::to_string(i));
  table->fill(rowsOf(others));
  EXPECT_EQ(utf8(cell(199'999).data().toString()), "b199999");
  table->fill(rowsOf(Texts{"b7"}));
  EXPECT_EQ(shown(), Texts{"b7"});
}

TEST_F(EditTableViewTest, ALongTextIsEditedAsAWholeOrNotAtAll) {
  const struct {
    std::size_t size;
    bool isEdited;
  } rows[] = {{40'000, true}, {3'000'000, false}};
  for (const auto& row : rows) {
    const std::string text(row.size, 'a');
    show(strings, rowsOf(Texts{text}));
    list().setCurrentIndex(cell(0));
    press(Qt::Key_F2);
    EXPECT_EQ(isEditing(), row.isEdited);
    press(Qt::Key_End);
    type("x");
    EXPECT_EQ(table->rows()[0].cells[0].size(), row.size + (row.isEdited ? 1 : 0));
  }
}

TEST_F(EditTableViewTest, ALockedTableStillLetsRowsBeDeleted) {
  show(boxes, rowsOf(Map{{"a", true}}));
  table->setEditable(false);
  EXPECT_FALSE(addButton().isEnabled());
  list().setCurrentIndex(cell(0));
  for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return, Qt::Key_Space, Qt::Key_Insert}) press(key);
  EXPECT_FALSE(isEditing());
  EXPECT_TRUE(changes.empty());
  press(Qt::Key_Delete);
  EXPECT_EQ(changes, Texts{""});
}

TEST_F(EditTableViewTest, SecretsAreConcealedUntilTheyAreAskedFor) {
  const QString bullets = QString(8, QChar(0x2022));
  show(variables, rowsOf(jobfile::StringMap<std::string>{{"HOME", "/h"}}));
  EXPECT_THROW((void)button("Nothing – PathState"), std::runtime_error);
  EXPECT_FALSE(button("Show Values – PathState").isVisible());
  table->fill(rowsOf(jobfile::StringMap<std::string>{{"API_TOKEN", "hush"}, {"HOME", "/h"}}));
  QToolButton& showValues = button("Show Values – PathState");
  EXPECT_TRUE(showValues.isVisible());
  EXPECT_EQ(cell(0, 1).data().toString(), bullets);
  EXPECT_EQ(cell(0, 1).data(Qt::ToolTipRole).toString(), QString());
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&list())->tableInterface()->cellAt(0, 1)->text(QAccessible::Name),
            bullets);
  EXPECT_EQ(cell(1, 1).data().toString(), QStringLiteral("/h"));
  list().setCurrentIndex(cell(0, 1));
  press(Qt::Key_F2);
  EXPECT_EQ(qobject_cast<QLineEdit*>(QApplication::focusWidget())->text(), QStringLiteral("hush"));
  press(Qt::Key_Escape);
  click(showValues);
  EXPECT_EQ(cell(0, 1).data().toString(), QStringLiteral("hush"));
  list().setCurrentIndex(cell(0, 0));
  press(Qt::Key_F2);
  type("X");
  EXPECT_FALSE(showValues.isVisible()) << "no name is secret any more";
}

TEST_F(EditTableViewTest, VariablesAreCopiedAndPastedAsLines) {
  show(variables, rowsOf(jobfile::StringMap<std::string>{{"A", "1"}, {"B", "two words"}}));
  list().setCurrentIndex(cell(1));
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(utf8(QGuiApplication::clipboard()->text()), "B=\"two words\"");
  QGuiApplication::clipboard()->setText(QStringLiteral("export A=\"x y\"\n\nC=3\n"));
  QTest::keyClick(&list(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(shown(), (Texts{"A", "B", "C"}));
  EXPECT_EQ(cell(0, 1).data().toString(), QStringLiteral("x y"));
  EXPECT_EQ(changes.size(), 1U);
  QGuiApplication::clipboard()->setText(QStringLiteral("D=4\nno variable\n"));
  QMetaObject::invokeMethod(&list(), "paste");
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_EQ(interface.errors[0].first, "Line 2 isn’t of the form NAME=value");
  EXPECT_EQ(changes.size(), 1U);
  table->setEditable(false);
  QGuiApplication::clipboard()->setText(QStringLiteral("D=4"));
  QTest::keyClick(&list(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(changes.size(), 1U) << "a locked table";
}

TEST_F(EditTableViewTest, ACellThatCantBeSavedIsMarkedWithTheReasonAndGetsTheFocus) {
  show(limits,
       {{.cells = {"CPU", "5"}, .recorded = {"CPU", "5"}}, {.cells = {"Stack", "6"}, .recorded = {"Stack", "6"}}});
  EXPECT_EQ(table->refuse(), std::nullopt);
  list().setCurrentIndex(cell(1, 1));
  press(Qt::Key_Return);
  type("6m");
  press(Qt::Key_Return);
  const QString reason = QStringLiteral("The value of “Stack” isn’t a whole number");
  EXPECT_EQ(cell(1, 1).data(Qt::ToolTipRole).toString(), reason);
  EXPECT_EQ(cell(1, 1).data(Qt::AccessibleDescriptionRole).toString(), reason);
  EXPECT_EQ(cell(0, 1).data(Qt::AccessibleDescriptionRole).toString(), QString());
  list().setCurrentIndex(cell(0));
  addButton().setFocus();
  EXPECT_EQ(qt(table->refuse()->reason), reason);
  EXPECT_EQ(list().currentIndex(), cell(1, 1));
  EXPECT_TRUE(list().hasFocus());
}

TEST_F(EditTableViewTest, ARowIsAddedNamedAndGivenAValueByKeyboardAlone) {
  show(variables, rowsOf(jobfile::StringMap<std::string>{{"A", "1"}}));
  press(Qt::Key_Insert);
  ASSERT_TRUE(isEditing());
  EXPECT_EQ(qobject_cast<QLineEdit*>(QApplication::focusWidget())->placeholderText(), QStringLiteral("Name"));
  press(Qt::Key_Escape);
  EXPECT_TRUE(changes.empty()) << "neither adding nor Escape is an edit";
  press(Qt::Key_Return);
  type("B");
  press(Qt::Key_Tab);
  type("2");
  press(Qt::Key_Escape);
  EXPECT_EQ(table->rows().back().cells, (Texts{"B", ""}));
  press(Qt::Key_Return);
  type("4");
  press(Qt::Key_Return);
  EXPECT_EQ(table->rows().back().cells, (Texts{"B", "4"}));
  press(Qt::Key_Delete);
  EXPECT_EQ(shown(), Texts{"A"});
}

}  // namespace
}  // namespace mirvel::ui
