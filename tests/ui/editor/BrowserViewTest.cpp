#include "ui/editor/BrowserView.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QComboBox>
#include <QListView>
#include <QTableView>
#include <QTextEdit>
#include <QToolButton>

#include "core/editor/BrowserSchema.h"
#include "ui/editor/EditorFixture.h"
#include "ui/editor/Section.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Texts = std::vector<std::string>;

const Dictionary streamSocket{{"SockType", "stream"}, {"SockPassive", true}};

class BrowserViewTest : public EditorFixture {
 protected:
  ~BrowserViewTest() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

  /// As `edit`, with the keyboard on the browser of a key.
  void open(propertylist::Dictionary keys, const char* key) {
    edit(std::move(keys));
    QTest::keyRelease(&window(), Qt::Key_Control);
    m_key = key;
    list(key).setFocus(Qt::TabFocusReason);
    testdata::settle();
  }
  BrowserView& browser() {
    for (auto* each : window().details().currentWidget()->findChildren<BrowserView*>()) {
      if (each->accessibleName() == qt(m_key)) return *each;
    }
    throw std::runtime_error("no browser " + m_key);
  }
  QListView& list(const char* name) {
    for (auto* each : browser().findChildren<QListView*>()) {
      if (each->accessibleName() == qt(name)) return *each;
    }
    throw std::runtime_error(std::string("no column ") + name);
  }
  template <typename Widget>
  Widget& value() {
    for (auto* each : browser().findChildren<Widget*>()) {
      if (each->isVisible() && !qobject_cast<QListView*>(each->parentWidget()->parentWidget())) return *each;
    }
    throw std::runtime_error("no such value");
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const focus = QApplication::focusWidget();
    ASSERT_TRUE(focus);
    QTest::keyClick(focus, key, modifiers);
    testdata::settle();
  }
  void press(std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) press(key);
  }
  void type(const char* text) {
    QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
    testdata::settle();
  }
  static QMenu& submenuOf(const QMenu& menu, const char* title) {
    for (const QAction* const action : menu.actions()) {
      if (action->menu() && action->text() == qt(title)) return *action->menu();
    }
    throw std::runtime_error(std::string("no submenu ") + title);
  }
  /// Chooses an item of the open menu, or of one of its submenus.
  void choose(const char* title, const char* submenu = nullptr) {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    for (QAction* const action : submenu ? submenuOf(*menu, submenu).actions() : menu->actions()) {
      if (action->text() != qt(title)) continue;
      EXPECT_TRUE(action->isEnabled()) << title;
      menu->close();
      action->trigger();
      return testdata::settle();
    }
    ADD_FAILURE() << "no item " << title;
  }
  /// The names in the columns, with the selected ones in brackets: "a [b] | [c]".
  std::string shown() {
    std::string text;
    for (auto* each : browser().findChildren<QListView*>()) {
      if (!each->isVisible()) continue;
      if (!text.empty()) text += " | ";
      for (int row = 0; row < each->model()->rowCount(); ++row) {
        const QModelIndex index = each->model()->index(row, 0);
        const std::string name = utf8(index.data().toString());
        const bool isSelected = each->selectionModel()->isSelected(index);
        text += (row > 0 ? " " : "") + (isSelected ? '[' + name + ']' : name);
      }
    }
    return text;
  }
  std::string focusName() { return utf8(QApplication::focusWidget()->accessibleName()); }
  bool isNaming() {
    auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    return field && qobject_cast<QListView*>(field->parentWidget()->parentWidget());
  }
  std::optional<propertylist::Value> saved() { return record().savedValue(browserSchema(m_key)->key); }

  std::string m_key;
};

TEST_F(BrowserViewTest, ASocketIsMadeByKeyboardAlone) {
  open({}, "Sockets");
  const QListView& empty = list("Sockets");
  EXPECT_EQ(empty.accessibleDescription(), QStringLiteral("No sockets"));
  EXPECT_TRUE(browser().rect().contains(QRect(empty.mapTo(&browser(), QPoint()), empty.size())))
      << "nothing is cut off";
  press(Qt::Key_Insert);
  ASSERT_TRUE(isNaming());
  EXPECT_FALSE(hasChanges()) << "a row without a name is no edit";
  type("Listeners");
  press(Qt::Key_Return);
  EXPECT_EQ(focusName(), "Sockets");
  press({Qt::Key_Right, Qt::Key_Insert});
  choose("SockServiceName");
  EXPECT_EQ(focusName(), "SockServiceName") << "the value of a fixed key is typed at once";
  type("8080");
  press(Qt::Key_Return);
  EXPECT_EQ(focusName(), "Listeners");
  EXPECT_EQ(shown(), "[Listeners] | [SockServiceName]");
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"Listeners", Dictionary{{"SockServiceName", 8080}}}}));
  press(Qt::Key_Insert);
  for (const QAction* action : qobject_cast<QMenu*>(QApplication::activePopupWidget())->actions()) {
    EXPECT_EQ(action->isEnabled(), action->text() != QStringLiteral("SockServiceName"));
    EXPECT_FALSE(action->toolTip().isEmpty());
  }
  choose("SockPassive");
  press(Qt::Key_Space);
  press({Qt::Key_Left, Qt::Key_Left});
  EXPECT_EQ(focusName(), "Sockets");
  EXPECT_EQ(saved(), propertylist::Value(
                         Dictionary{{"Listeners", Dictionary{{"SockServiceName", 8080}, {"SockPassive", false}}}}));
}

TEST_F(BrowserViewTest, RenamingKeepsThePlaceAndEscapeTheName) {
  const struct {
    std::vector<Qt::Key> before;  ///< opens the editor of a name
    const char* typed;
    Qt::Key last;
    const char* shown;
    bool isEdit;
  } table[] = {
      {{Qt::Key_F2}, "z", Qt::Key_Return, "[z] b | SockPassive SockType", true},
      {{Qt::Key_Return}, "z", Qt::Key_Enter, "[z] b | SockPassive SockType", true},
      {{Qt::Key_F2}, "z", Qt::Key_Escape, "[a] b | SockPassive SockType", false},
      {{Qt::Key_F2}, "a", Qt::Key_Return, "[a] b | SockPassive SockType", false},
      {{Qt::Key_Down, Qt::Key_F2}, "a b", Qt::Key_Return, "a [a b] | ", true},
      {{Qt::Key_Insert}, "c", Qt::Key_Escape, "a [b] | ", false},
      {{Qt::Key_Insert}, "", Qt::Key_Return, "a [b] | ", false},
      {{Qt::Key_Insert}, "c", Qt::Key_Return, "a b [c] | ", true},
      {{Qt::Key_Insert}, "c", Qt::Key_Tab, "a b [c] | ", true},
  };
  for (const auto& row : table) {
    open({{"Sockets", Dictionary{{"a", streamSocket}, {"b", Dictionary()}}}}, "Sockets");
    for (const Qt::Key key : row.before) press(key);
    ASSERT_TRUE(isNaming()) << row.shown;
    type(row.typed);
    press(row.last);
    EXPECT_EQ(shown(), row.shown);
    EXPECT_EQ(hasChanges(), row.isEdit) << row.shown;
    EXPECT_FALSE(isNaming());
    while (program().editing.canUndo()) program().editing.undo();
    program().shell.detail->showDisplay();
  }
}

TEST_F(BrowserViewTest, ARepeatedNameIsMarkedAndNotWritten) {
  const Dictionary sockets{{"a", streamSocket}, {"b", Dictionary()}};
  open({{"Sockets", sockets}}, "Sockets");
  press(Qt::Key_F2);
  type("b");
  press(Qt::Key_Return);
  const QModelIndex row = list("Sockets").model()->index(0, 0);
  EXPECT_EQ(row.data(Qt::AccessibleDescriptionRole).toString(), QStringLiteral("More than one row is called “b”"));
  EXPECT_EQ(row.data(Qt::ToolTipRole).toString(), QStringLiteral("More than one row is called “b”"));
  EXPECT_EQ(saved(), propertylist::Value(sockets));
  list("Sockets").clearFocus();
  button("Save").click();
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(focusName(), "Sockets");
  press(Qt::Key_F2);
  type("c");
  press(Qt::Key_Return);
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"c", streamSocket}, {"b", Dictionary()}}));
}

TEST_F(BrowserViewTest, SavingRefusesAnInvalidValueAndFocusesOnIt) {
  open({{"Sockets", Dictionary{{"a", Dictionary{{"SockPathMode", 384}}}}}}, "Sockets");
  press({Qt::Key_Right, Qt::Key_Right});
  QLineEdit& mode = value<QLineEdit>();
  EXPECT_EQ(mode.text(), QStringLiteral("600")) << "modes are octal";
  type("9x");
  EXPECT_EQ(mode.toolTip(), QStringLiteral("Enter an octal number, such as 600."));
  EXPECT_EQ(mode.accessibleDescription(), mode.toolTip());
  EXPECT_EQ(mode.palette().color(QPalette::Text), invalidData(browser().palette()));
  press({Qt::Key_Return, Qt::Key_Left, Qt::Key_Up});
  control<QLineEdit>("Label").setFocus();
  button("Save").click();
  EXPECT_THAT(interface.errors, ElementsAre(std::pair(std::string("“Sockets.a.SockPathMode” can’t be saved"),
                                                      std::string("Enter an octal number, such as 600."))));
  EXPECT_EQ(focusName(), "SockPathMode");
  type("0644");
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", Dictionary{{"SockPathMode", 420}}}}));
  EXPECT_EQ(value<QLineEdit>().text(), QStringLiteral("0644")) << "typing isn't replaced by another form";
}

TEST_F(BrowserViewTest, EscapeBringsTheOldValueBack) {
  open({{"Sockets", Dictionary{{"a", Dictionary{{"SockType", "stream"}}}}}}, "Sockets");
  press({Qt::Key_Right, Qt::Key_Right});
  type("x");
  press(Qt::Key_Escape);
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", Dictionary{{"SockType", "stream"}}}}));
  EXPECT_EQ(focusName(), "a");
}

TEST_F(BrowserViewTest, KnownValuesAreOfferedButTheWheelChangesNothing) {
  open({{"Sockets", Dictionary{{"a", Dictionary{{"SockType", "odd"}}}}}}, "Sockets");
  press(Qt::Key_Right);
  auto& popUp = value<QComboBox>();
  EXPECT_EQ(popUp.currentText(), QStringLiteral("odd"));
  QWheelEvent wheel(QPointF(5, 5), popUp.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), Qt::NoButton, {},
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&popUp, &wheel);
  EXPECT_FALSE(hasChanges());
  Texts offered;
  for (int i = 0; i < popUp.count(); ++i) offered.push_back(utf8(popUp.itemText(i)));
  EXPECT_THAT(offered, ElementsAre("stream", "dgram", "seqpacket"));
  popUp.setCurrentIndex(1);
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", Dictionary{{"SockType", "dgram"}}}}));
}

TEST_F(BrowserViewTest, ABooleanIsUndecidedUntilItIsChosen) {
  open({{"Sockets", Dictionary{{"a", Dictionary()}}}}, "Sockets");
  press({Qt::Key_Right, Qt::Key_Insert});
  choose("Bonjour");
  auto& box = value<QCheckBox>();
  EXPECT_EQ(box.checkState(), Qt::PartiallyChecked);
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", Dictionary()}}));
  const struct {
    const char* text;
    bool isOn;
  } clicks[] = {{"On", true}, {"Off", false}, {"On", true}};
  for (const auto& click : clicks) {
    press(Qt::Key_Space);
    EXPECT_EQ(box.text(), QLatin1String(click.text));
    EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", Dictionary{{"Bonjour", click.isOn}}}}));
  }
  EXPECT_EQ(utf8(box.accessibleName()), "Bonjour");
}

TEST_F(BrowserViewTest, TheTypeIsChangedByMenu) {
  open({{"MachServices", Dictionary{{"a", true}}}}, "MachServices");
  press(Qt::Key_F10, Qt::ShiftModifier);
  choose("Dictionary", "Type");
  EXPECT_EQ(shown(), "[a] | ");
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", Dictionary()}}));
  press(Qt::Key_F10, Qt::ShiftModifier);
  choose("Boolean", "Type");
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", true}}));
}

TEST_F(BrowserViewTest, ASubtreeIsCopiedToAnotherJob) {
  writeJob(Kind::userAgent, "b", {});
  open({{"Sockets", Dictionary{{"x", streamSocket}}}}, "Sockets");
  press(Qt::Key_C, Qt::ControlModifier);
  ASSERT_THAT(workspace.calls, SizeIs(1));
  EXPECT_FALSE(hasChanges());
  QGuiApplication::clipboard()->setText(qt(workspace.calls.front().substr(std::string("copy ").size())));
  program().shell.detail->showDisplay();
  click(1);
  QTest::keyClick(&window(), Qt::Key_E, Qt::ControlModifier);
  ASSERT_EQ(record().name, "b");
  list("Sockets").setFocus();
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"x", streamSocket}}));
  press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(shown(), "x [x 2] | SockPassive SockType");
  QGuiApplication::clipboard()->setText(QStringLiteral("no list"));
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_THAT(interface.errors, SizeIs(1));
  press({Qt::Key_Delete, Qt::Key_Delete});
  EXPECT_EQ(saved(), std::nullopt);
  EXPECT_THAT(interface.alerts, IsEmpty()) << "no key has reached the commands for jobs";
  EXPECT_EQ(table().model()->rowCount(), 2);
}

TEST_F(BrowserViewTest, ThePathAndTheFocusSurviveUndoAndScans) {
  open({{"Sockets", Dictionary{{"a", streamSocket}, {"b", streamSocket}}}}, "Sockets");
  press({Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Right});
  type("x");
  const QWidget* const field = QApplication::focusWidget();
  program().editing.undo();
  EXPECT_EQ(shown(), "a [b] | SockPassive [SockType]");
  EXPECT_EQ(QApplication::focusWidget(), field);
  EXPECT_EQ(value<QLineEdit>().text(), QStringLiteral("stream"));
  program().editing.redo();
  EXPECT_EQ(value<QLineEdit>().text(), QStringLiteral("x"));
  program().editing.undo();
  scan();
  testdata::settle();
  EXPECT_EQ(shown(), "a [b] | SockPassive [SockType]");
  EXPECT_EQ(QApplication::focusWidget(), field);
  press({Qt::Key_Return, Qt::Key_Delete});
  program().editing.undo();
  EXPECT_EQ(shown(), "a [b] | [SockPassive] SockType");
}

TEST_F(BrowserViewTest, TextsOfAnArrayAreRows) {
  const auto events = [](Array texts) {
    return propertylist::Value(Dictionary{{"s", Dictionary{{"e", Dictionary{{"k", std::move(texts)}}}}}});
  };
  open({{"LaunchEvents", events({"", "one"})}}, "LaunchEvents");
  press({Qt::Key_Right, Qt::Key_Right, Qt::Key_Right});
  EXPECT_TRUE(qobject_cast<QTableView*>(QApplication::focusWidget()));
  press(Qt::Key_Insert);
  type("two");
  press(Qt::Key_Return);
  press(Qt::Key_Insert);
  press(Qt::Key_Return);
  EXPECT_EQ(saved(), events({"", "one", "two"})) << "the empty text of the file is kept, an empty row isn't written";
  EXPECT_EQ(shown(), "[s] | [e] | [k]");
}

TEST_F(BrowserViewTest, TheWholeKeyIsRemovedByItsHelp) {
  open({{"Sockets", Dictionary{{"a", streamSocket}}}}, "Sockets");
  press(Qt::Key_F1);
  auto* const help = QApplication::activePopupWidget();
  ASSERT_TRUE(help);
  EXPECT_THAT(utf8(help->findChild<QTextEdit*>()->toPlainText()), HasSubstr("launch_activate_socket(3)"));
  help->findChild<QPushButton*>()->click();
  EXPECT_EQ(saved(), std::nullopt);
  EXPECT_EQ(shown(), "");
  program().editing.undo();
  EXPECT_EQ(saved(), propertylist::Value(Dictionary{{"a", streamSocket}}));
}

TEST_F(BrowserViewTest, ANameThatIsStillBeingTypedReachesNoOtherJob) {
  writeJob(Kind::userAgent, "b", {{"Sockets", Dictionary{{"a", Dictionary()}}}});
  open({{"Sockets", Dictionary{{"a", streamSocket}}}}, "Sockets");
  press(Qt::Key_F2);
  type("new");
  program().selection.select(scan().at(1));
  testdata::settle();
  ASSERT_EQ(record().name, "b");
  EXPECT_EQ(record().savedValue(jobfile::Plist::CodingKeys::Sockets),
            propertylist::Value(Dictionary{{"a", Dictionary()}}));
}

TEST_F(BrowserViewTest, TheDetailsOnlyShow) {
  const Dictionary event{{"count", 3}, {"isOn", true}, {"texts", Array{"one", "two"}}};
  writeJob(Kind::userAgent, "a", {{"LaunchEvents", Dictionary{{"s", Dictionary{{"e", event}}}}}});
  (void)window();
  scan();
  testdata::settle();
  click(0);
  m_key = "LaunchEvents";
  EXPECT_THAT(browser().findChildren<QToolButton*>(), IsEmpty());
  list("LaunchEvents").setFocus(Qt::TabFocusReason);
  const char* const values[] = {"3", "On", "one\ntwo"};
  press({Qt::Key_Right, Qt::Key_Right});
  for (const char* const text : values) {
    EXPECT_EQ(value<QTextEdit>().toPlainText(), QString::fromUtf8(text));
    EXPECT_TRUE(value<QTextEdit>().isReadOnly());
    press(Qt::Key_Down);
  }
  EXPECT_EQ(shown(), "[s] | [e] | count isOn [texts]");
  for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return, Qt::Key_Insert}) {
    press(key);
    EXPECT_FALSE(isNaming());
    EXPECT_FALSE(QApplication::activePopupWidget());
  }
  EXPECT_FALSE(hasChanges());
}

/// Would take minutes if the time for each step grew with the square of the number of items.
TEST_F(BrowserViewTest, TenThousandServicesCanBeEdited) {
  Dictionary services;
  for (int i = 0; i < 10000; ++i) services.set("service" + std::to_string(1000000 + i), true);
  open({{"MachServices", services}}, "MachServices");
  press({Qt::Key_Down, Qt::Key_F2});
  type("z");
  press({Qt::Key_Return, Qt::Key_Right, Qt::Key_Space});
  services.remove("service1000001");
  services.set("z", false);
  EXPECT_EQ(saved(), propertylist::Value(services));
  press({Qt::Key_Left, Qt::Key_Delete});
  services.remove("z");
  EXPECT_EQ(saved(), propertylist::Value(services));
}

TEST_F(BrowserViewTest, AValueThatIsNoDictionaryIsNotReplacedInSilence) {
  open({{"Sockets", "text"}}, "Sockets");
  EXPECT_EQ(list("Sockets").accessibleDescription(),
            QStringLiteral("The value of “Sockets” isn’t a dictionary. Delete it before you add entries."));
  EXPECT_FALSE(browser().findChild<QToolButton*>()->isEnabled());
  press(Qt::Key_Insert);
  EXPECT_FALSE(isNaming());
  QGuiApplication::clipboard()->setText(QStringLiteral("<dict><key>a</key><dict/></dict>"));
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(saved(), propertylist::Value("text"));
  EXPECT_FALSE(hasChanges());
  press(Qt::Key_F1);
  QApplication::activePopupWidget()->findChild<QPushButton*>()->click();
  EXPECT_EQ(saved(), std::nullopt);
  press(Qt::Key_Insert);
  EXPECT_TRUE(isNaming());
}

TEST_F(BrowserViewTest, ProblemsAreShownBelowTheBrowserOfTheirKey) {
  open({{"Sockets", Dictionary{{"a", Dictionary()}}}}, "Sockets");
  std::vector<FieldProblem> problems = {{.key = "Sockets", .text = "Others can connect."},
                                        {.key = "SockPathMode", .text = "Of no key."}};
  auto* const section = dynamic_cast<Section*>(browser().parentWidget()->parentWidget());
  ASSERT_TRUE(section);
  section->takeProblems(problems);
  testdata::settle();
  EXPECT_THAT(problems, SizeIs(1));
  const auto* const shown = section->findChild<QTextEdit*>();
  ASSERT_TRUE(shown && shown->isVisible());
  EXPECT_EQ(shown->toPlainText(), QStringLiteral("Others can connect."));
  EXPECT_GE(shown->mapToGlobal(QPoint()).y(), browser().mapToGlobal(browser().rect().bottomLeft()).y());
}

TEST_F(BrowserViewTest, RightToLeftIsMirrored) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  open({{"Sockets", Dictionary{{"a", streamSocket}}}}, "Sockets");
  press(Qt::Key_Left);
  EXPECT_EQ(focusName(), "a");
  EXPECT_LT(list("a").mapToGlobal(QPoint()).x(), list("Sockets").mapToGlobal(QPoint()).x());
  press(Qt::Key_Left);
  EXPECT_EQ(focusName(), "SockPassive");
  press({Qt::Key_Right, Qt::Key_Right});
  EXPECT_EQ(focusName(), "Sockets");
}

TEST_F(BrowserViewTest, TheLastColumnScrollsIntoView) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    open({{"LaunchEvents", Dictionary{{"s", Dictionary{{"e", Dictionary{{"k", "text"}}}}}}}}, "LaunchEvents");
    window().details().setMaximumWidth(420);
    testdata::settle();
    const QRect pane(browser().mapToGlobal(QPoint()), browser().size());
    const auto isInSight = [&](QWidget& widget) {
      return pane.contains(QRect(widget.mapToGlobal(QPoint()), widget.size()));
    };
    const Qt::Key forward = direction == Qt::LeftToRight ? Qt::Key_Right : Qt::Key_Left;
    press({forward, forward});
    EXPECT_TRUE(isInSight(list("e")));
    EXPECT_TRUE(isInSight(value<QLineEdit>()));
    EXPECT_FALSE(isInSight(list("LaunchEvents")));
    const Qt::Key back = direction == Qt::LeftToRight ? Qt::Key_Left : Qt::Key_Right;
    press({back, back});
    EXPECT_TRUE(isInSight(list("LaunchEvents")));
    program().shell.detail->showDisplay();
  }
}

TEST_F(BrowserViewTest, TheFocusFollowsTheReadingOrder) {
  open({{"Sockets", Dictionary{{"a", Dictionary{{"SockType", "stream"}}}}}}, "Sockets");
  press(Qt::Key_Right);
  Texts names;
  browser().findChild<QToolButton*>()->setFocus();
  for (int i = 0; i < 7; ++i) {
    names.push_back(focusName());
    press(Qt::Key_Tab);
  }
  EXPECT_THAT(names, ElementsAre("add in column 1", "delete in column 1", "Sockets", "add in column 2",
                                 "delete in column 2", "a", "SockType"));
  EXPECT_FALSE(browser().isAncestorOf(QApplication::focusWidget()));
}

}  // namespace
}  // namespace mirvel::ui
