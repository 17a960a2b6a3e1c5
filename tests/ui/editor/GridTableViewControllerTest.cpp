#include "ui/editor/GridTableViewController.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QShortcut>
#include <QTest>
#include <QToolButton>

#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {
namespace {

using GridTable::Kind;
using Texts = std::vector<std::string>;
using Map = jobfile::StringMap<bool>;

class Recorder final : public GridTableDelegate {
 public:
  Texts told = {};  ///< the rows at each change, as "a+ b-" by their boxes

  void gridTableChanged(const std::string& key, const std::vector<GridTable::Item>& rows) override {
    EXPECT_EQ(key, "PathState");
    std::string text;
    for (const auto& row : rows) text += (text.empty() ? "" : " ") + row.string + (row.bool_ ? "+" : "-");
    told.push_back(text);
  }
};

class GridTableViewControllerTest : public testdata::ProgramFixture {
 protected:
  void show(Kind kind, const GridTable::Source& content) {
    recorder.told.clear();
    table = std::make_unique<GridTableViewController>(program(), kind, content, "PathState", recorder);
    table->resize(300, table->sizeHint().height());
    table->show();
    table->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(table.get()));
    table->setFocus();
  }
  QListWidget& list() { return *table->findChild<QListWidget*>(); }
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
  Texts shown() {
    Texts result;
    for (int row = 0; row < list().count(); ++row) result.push_back(utf8(list().item(row)->text()));
    return result;
  }

  Recorder recorder;
  std::unique_ptr<GridTableViewController> table;
};

TEST_F(GridTableViewControllerTest, EachKeystrokeIsToldAndReturnEndsTheEditing) {
  show(Kind::string, Texts{"a", "b"});
  list().setCurrentRow(1);
  press(Qt::Key_Return);
  ASSERT_TRUE(isEditing());
  type("xy");
  EXPECT_EQ(recorder.told, (Texts{"a- x-", "a- xy-"}));
  press(Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), &list());
  EXPECT_EQ(shown(), (Texts{"a", "xy"}));
  EXPECT_EQ(recorder.told.size(), 2U) << "to end it is no change";
}

TEST_F(GridTableViewControllerTest, EscapeBringsTheOldTextBack) {
  show(Kind::string, Texts{"a"});
  list().setCurrentRow(0);
  press(Qt::Key_F2);
  type("x");
  press(Qt::Key_Escape);
  EXPECT_EQ(shown(), (Texts{"a"}));
  EXPECT_EQ(recorder.told, (Texts{"x-", "a-"}));
}

TEST_F(GridTableViewControllerTest, AnAddedRowWithoutATextIsEditedAtOnce) {
  show(Kind::boolString, Map{{"a", false}});
  click(addButton());
  ASSERT_TRUE(isEditing());
  EXPECT_EQ(recorder.told, Texts()) << "it is no row until it has a text";
  type("n");
  EXPECT_EQ(recorder.told, (Texts{"a- n+"}));
  click(addButton());
  ASSERT_TRUE(isEditing());
  EXPECT_EQ(shown(), (Texts{"a", "n", ""})) << "what was being typed stays";
  press(Qt::Key_Return);
  press(Qt::Key_Insert);
  EXPECT_TRUE(isEditing());
  EXPECT_EQ(list().currentRow(), 3);
}

TEST_F(GridTableViewControllerTest, PathsComeFromAPanel) {
  const struct {
    Kind kind;
    const char* chosen;
    Qt::KeyboardModifiers modifiers;
    bool isFolder;
    Texts rows;
  } rows[] = {
      {Kind::path, "/b c", Qt::NoModifier, false, {"/a", "/b c"}},
      {Kind::boolPath, "/b", Qt::AltModifier, false, {"/a", "/b"}},
      {Kind::directory, "/b", Qt::NoModifier, true, {"/a", "/b"}},
      {Kind::directory, nullptr, Qt::AltModifier, true, {"/a"}},
  };
  for (const auto& row : rows) {
    interface.openPanels.clear();
    interface.openPath = row.chosen ? std::optional<std::filesystem::path>(row.chosen) : std::nullopt;
    if (GridTable::hasBox(row.kind)) {
      show(row.kind, Map{{"/a", true}});
    } else {
      show(row.kind, Texts{"/a"});
    }
    click(addButton(), row.modifiers);
    ASSERT_EQ(interface.openPanels.size(), 1U);
    EXPECT_EQ(interface.openPanels[0].choosesFolders, row.isFolder);
    EXPECT_EQ(interface.openPanels[0].showsHiddenFiles, row.modifiers != Qt::NoModifier);
    EXPECT_EQ(shown(), row.rows);
    EXPECT_EQ(recorder.told.size(), row.chosen ? 1U : 0U);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(list().selectedItems().size(), row.chosen ? 1 : 0);
    EXPECT_TRUE(!row.chosen || list().item(1)->isSelected());
  }
}

TEST_F(GridTableViewControllerTest, EachSessionTypeIsOfferedOnce) {
  show(Kind::limitLoadToSessionType, Texts{"Background"});
  click(addButton());
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_TRUE(menu);
  Texts offered;
  for (const QAction* action : menu->actions()) {
    if (action->isEnabled()) offered.push_back(utf8(action->text()));
  }
  EXPECT_EQ(offered, (Texts{"Aqua", "LoginWindow", "StandardIO"}));
  menu->actions().front()->trigger();
  menu->close();
  testdata::settle();
  EXPECT_EQ(shown(), (Texts{"Background", "Aqua"}));
  for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return}) {
    press(key);
    EXPECT_FALSE(isEditing()) << "its text is one of four";
  }
}

TEST_F(GridTableViewControllerTest, TheDeleteKeyDeletesTheRowAndNothingElse) {
  show(Kind::string, Texts{"a", "b", "c"});
  int deletedJobs = 0;
  QShortcut job(QKeySequence(QKeySequence::Delete), table.get());
  QObject::connect(&job, &QShortcut::activated, [&] { ++deletedJobs; });
  EXPECT_FALSE(deleteButton().isEnabled());
  press(Qt::Key_Delete);
  EXPECT_TRUE(recorder.told.empty()) << "no row is selected";

  list().setCurrentRow(1);
  EXPECT_TRUE(deleteButton().isEnabled());
  press(Qt::Key_Delete);
  EXPECT_EQ(recorder.told, (Texts{"a- c-"}));
  press(Qt::Key_F2);
  ASSERT_TRUE(isEditing());
  press(Qt::Key_Delete);
  EXPECT_EQ(recorder.told.back(), "a- -") << "in a text it deletes a character";
  EXPECT_EQ(deletedJobs, 0);

  click(deleteButton());
  EXPECT_EQ(shown(), (Texts{"a"})) << "and the button the row whose text is being edited";
  click(deleteButton());
  EXPECT_EQ(recorder.told.back(), "");
  EXPECT_FALSE(deleteButton().isEnabled());
}

TEST_F(GridTableViewControllerTest, TheOnlyRowCanBeDeletedWithoutAMouse) {
  show(Kind::boolString, Map{{"a", true}});
  addButton().setFocus();
  QTest::keyClick(&addButton(), Qt::Key_Backtab);
  ASSERT_EQ(QApplication::focusWidget(), &list());
  press(Qt::Key_Delete);
  EXPECT_EQ(recorder.told, (Texts{""}));
}

TEST_F(GridTableViewControllerTest, BoxesAreTickedByKeyAndByClick) {
  show(Kind::boolPath, Map{{"/a", false}, {"/b", true}});
  list().setCurrentRow(0);
  press(Qt::Key_Space);
  EXPECT_EQ(recorder.told, (Texts{"/a+ /b+"}));
  const QRect second = list().visualItemRect(list().item(1));
  QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, QPoint(second.left() + 10, second.center().y()));
  EXPECT_EQ(recorder.told, (Texts{"/a+ /b+", "/a+ /b-"}));
}

TEST_F(GridTableViewControllerTest, ToolTipsShowTheWholeTextAsItStands) {
  show(Kind::string, Texts{"a & b", "<b>bold</b>"});
  EXPECT_EQ(list().item(0)->toolTip(), QStringLiteral("a & b"));
  EXPECT_EQ(list().item(1)->toolTip(), QStringLiteral("<qt>&lt;b&gt;bold&lt;/b&gt;</qt>"));
  list().setCurrentRow(1);
  press(Qt::Key_F2);
  type("new");
  press(Qt::Key_Return);
  EXPECT_EQ(list().item(1)->toolTip(), QStringLiteral("new"));
}

TEST_F(GridTableViewControllerTest, TheListGrowsFromFourRowsToEight) {
  const auto heightOf = [&](std::size_t rows) {
    show(Kind::string, Texts(rows, "text"));
    return list().height();
  };
  const int four = heightOf(4);
  EXPECT_EQ(heightOf(1), four);
  EXPECT_EQ(heightOf(9), heightOf(8));
  EXPECT_NEAR(heightOf(8), 2 * four, 2 * list().frameWidth());
  EXPECT_GE(four, 4 * list().sizeHintForRow(0)) << "four are seen whole";
}

}  // namespace
}  // namespace mirvel::ui
