#include <gmock/gmock.h>

#include <QPushButton>
#include <QToolButton>

#include "core/catalogue/PrivilegedHelperTool.h"
#include "ui/creation/SheetFixture.h"
#include "ui/editor/EditorFixture.h"
#include "ui/editor/InfoLaunchdSheet.h"
#include "ui/editor/JobDetailsView.h"
#include "ui/editor/PathControl.h"
#include "ui/scripts/ScriptText.h"

namespace mirvel::ui {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class InfoSheetsTest : public SheetFixture<SheetViewController> {
 protected:
  /// Selects the job with this name and opens its sheet.
  void open(const std::string& name) {
    (void)window();
    scan();
    testdata::settle();
    const auto names = texts(table());
    click(static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin()));
    ASSERT_EQ(program().selection.job() ? program().selection.job()->name : "none", name);
    program().menus.perform(Command::Info);
    testdata::settle();
  }
  void openJob(propertylist::Dictionary keys = {}) {
    writeJob(Kind::userAgent, "a", std::move(keys));
    open("a");
    (void)sheet();
  }
  ScriptText& text() { return control<ScriptText>("textView"); }
  QPushButton& change() { return control<QPushButton>("changeButton"); }
  QPushButton& close() { return control<QPushButton>("closeButton"); }
  std::string status() {
    const auto& label = control<QLabel>("status");
    return label.isVisible() ? utf8(label.text()) : "";
  }
  void replaceInText(const std::string& part, const std::string& by) {
    std::string typed = text().text();
    text().setText(typed.replace(typed.find(part), part.size(), by));
  }
  int sheetCount() { return static_cast<int>(window().findChildren<SheetViewController*>().size()); }
};

}  // namespace

TEST_F(InfoSheetsTest, TheTextIsChangedByKeyboard) {
  openJob({{"Nice", 5}});
  EXPECT_TRUE(text().focusProxy()->hasFocus());
  press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(utf8(sheet().focusWidget()->accessibleName()), "a.plist") << "the end of the path, above the text";
  press(Qt::Key_Tab);
  press(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_TRUE(close().hasFocus());
  text().setFocus();
  EXPECT_FALSE(change().isEnabled());
  EXPECT_EQ(close().text(), QStringLiteral("Close"));

  text().setInsertionPoint(text().text().find("5</integer>"));
  type("1");
  EXPECT_TRUE(change().isEnabled());
  EXPECT_EQ(close().text(), QStringLiteral("Discard Changes"));
  press(Qt::Key_Backspace);
  EXPECT_FALSE(change().isEnabled()) << "as it was";
  type("1");
  press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_FALSE(hasSheet());
  EXPECT_EQ(program().shell.detail->detailTab(), DetailTab::LaunchdEdit);
  EXPECT_EQ(dynamic_cast<Launchd&>(*program().selection.job()).plist().nice, 15);
  EXPECT_TRUE(window().isWindowModified());
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(InfoSheetsTest, AFaultyLineIsMarkedUntilTheTextChanges) {
  openJob({{"Nice", 5}});
  replaceInText("5<", "5m<");
  const QImage unmarked = text().grab().toImage();
  change().click();
  EXPECT_TRUE(sheet().isVisible());
  EXPECT_THAT(status(), HasSubstr("Line 8: <integer> contains `5m`"));
  EXPECT_EQ(text().insertionPoint(), text().text().find("<integer>5m"));
  EXPECT_TRUE(text().focusProxy()->hasFocus());
  EXPECT_NE(text().grab().toImage(), unmarked);
  replaceInText("5m<", "6<");
  EXPECT_EQ(status(), "");
  change().click();
  EXPECT_FALSE(hasSheet());
}

TEST_F(InfoSheetsTest, ClosingAsksOnlyIfTextWouldBeLost) {
  openJob();
  replaceInText("a<", "b<");
  interface.answer.button = Interface::alternateButton;
  const std::function<void()> ways[] = {[this] { press(Qt::Key_Escape); }, [this] { close().click(); },
                                        [this] { sheet().close(); }, [this] { window().close(); }};
  std::size_t asked = 0;
  for (const auto& way : ways) {
    way();
    EXPECT_THAT(interface.alerts, SizeIs(++asked));
    EXPECT_TRUE(sheet().isVisible());
    EXPECT_TRUE(window().isVisible());
  }
  interface.answer.button = Interface::defaultButton;
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_FALSE(program().editing.hasUnsavedChanges());

  program().menus.perform(Command::Info);
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_THAT(interface.alerts, SizeIs(asked + 1)) << "nothing was typed";
}

TEST_F(InfoSheetsTest, ASecondRequestDoesNothing) {
  openJob();
  program().shell.sheets.at(Sheet::Info)();
  EXPECT_EQ(sheetCount(), 1);
  sheet().reject();
  program().selection.select(nullptr);
  program().shell.sheets.at(Sheet::Info)();
  EXPECT_FALSE(hasSheet());
}

TEST_F(InfoSheetsTest, ADaemonOfTheSystemCanOnlyBeRead) {
  EXPECT_TRUE(foundation.defaults.setShowSystemJobs(true));
  writeJob(Kind::systemDaemon, "s");
  open("s");
  const std::string before = text().text();
  type("x");
  press(Qt::Key_Delete);
  EXPECT_EQ(text().text(), before);
  EXPECT_THAT(before, HasSubstr("<string>s</string>"));
  EXPECT_EQ(status(), "This job can’t be edited.");
  EXPECT_EQ(sheet().findChild<QPushButton*>(QStringLiteral("changeButton")), nullptr);
  press(Qt::Key_Tab);
  EXPECT_FALSE(text().focusProxy()->hasFocus());
}

TEST_F(InfoSheetsTest, ThePathRevealsTheFileAndOpensItsFolders) {
  openJob();
  const auto file = path(Kind::userAgent, "a.plist");
  const auto buttons = sheet().findChild<PathControl*>()->findChildren<QToolButton*>();
  buttons.at(buttons.size() - 1)->click();
  QTest::keyClick(buttons.at(buttons.size() - 2), Qt::Key_Return);
  EXPECT_THAT(workspace.calls, ElementsAre("reveal " + file.string(), "open " + file.parent_path().string()));
  EXPECT_TRUE(sheet().isVisible());
}

TEST(PathControlTest, ALongPathLosesItsMiddleFirst) {
  testdata::FakeWorkspace workspace;
  QWidget owner;
  PathControl control(workspace, URL::file("/first/second folder/third folder/a long name of a file.plist"), &owner);
  owner.show();
  const auto shown = [&control](int width) {
    control.resize(width, control.sizeHint().height());
    testdata::settle();
    std::string result;
    for (const auto* button : control.findChildren<QToolButton*>())
      result += utf8(button->text().remove(QChar(0x2066)).remove(QChar(0x2069))) + '|';
    return result;
  };
  constexpr int full = 2000;
  EXPECT_EQ(shown(full), "/|first|second folder|third folder|a long name of a file.plist|");
  EXPECT_THAT(shown(control.layout()->sizeHint().width() - 1), testing::StartsWith("/|…|"))
      << "the first component after the root";
  const std::string narrow = shown(control.minimumSizeHint().width());
  EXPECT_THAT(narrow, testing::StartsWith("/|…|…|…|"));
  EXPECT_THAT(narrow, testing::Not(HasSubstr("long name of")));
  EXPECT_EQ(shown(full), "/|first|second folder|third folder|a long name of a file.plist|");
  EXPECT_EQ(control.findChildren<QToolButton*>().at(2)->accessibleName(), QStringLiteral("second folder"));
}

TEST_F(InfoSheetsTest, OtherKindsHaveTheirSheets) {
  loginItems.ownItems = {{.name = "own", .path = "/bin/own", .kind = "Program"}};
  (void)write(Kind::localStartupItem, "Web/StartupParameter.plist",
              testdata::startupParameters("Web", propertylist::Array{"W"}));
  (void)write(Kind::localStartupItem, "Web/Web", "#!/bin/sh\necho 1\n");
  (void)write(Kind::privilegedHelperTool, "tool", "");
  const struct {
    const char* name;
    const char* frame;
    const char* content;
  } table[] = {{"own", "InfoLoginItemSheet", "own|Program|/bin/own|"},
               {"Web", "InfoStartupItemSheet", "#!/bin/sh\necho 1\n"},
               {"tool", "InfoPriviliegedHelperToolSheet", ""}};
  for (const auto& row : table) {
    open(row.name);
    EXPECT_EQ(utf8(sheet().objectName()), row.frame);
    std::string content;
    for (const auto* value : sheet().findChildren<QTextEdit*>()) content += utf8(value->toPlainText()) + '|';
    if (const auto* script = sheet().findChild<ScriptText*>()) {
      content = script->text();
      type("x");
      EXPECT_EQ(script->text(), content) << "read-only";
    }
    EXPECT_EQ(content, row.content);
    press(Qt::Key_Escape);
    EXPECT_FALSE(hasSheet()) << row.name;
  }
}

TEST_F(InfoSheetsTest, DetailsOfOtherKindsFollowTheirRows) {
  loginItems.ownItems = {{.name = "own", .path = "/bin/own", .kind = "Program"}};
  (void)write(Kind::localStartupItem, "Web/StartupParameter.plist",
              testdata::startupParameters("Web", propertylist::Array{"W"}));
  const auto script = write(Kind::localStartupItem, "Web/Web", "#!/bin/sh\necho 1\n");
  open("own");
  sheet().reject();
  const auto& details = *window().details().currentWidget();
  for (auto* button : details.findChildren<QToolButton*>()) button->click();
  EXPECT_THAT(workspace.calls, ElementsAre(HasSubstr("open "), "reveal /bin/own"));

  open("Web");
  sheet().reject();
  EXPECT_EQ(details.findChild<ScriptText*>()->text(), "#!/bin/sh\necho 1\n");
  EXPECT_THAT(details.findChildren<QToolButton*>(), SizeIs(1));
  std::filesystem::remove(script);
  program().shell.detail->updateDetail();
  EXPECT_EQ(details.findChild<ScriptText*>(), nullptr) << "the reason instead";
}

}  // namespace mirvel::ui
