#include "ui/creation/CopySheets.h"

#include <gmock/gmock.h>

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QUrl>

#include "ui/creation/RestoreSheet.h"
#include "ui/creation/SheetFixture.h"

namespace mirvel::ui {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

/// A program with one job, which is selected.
class CopySheetsTest : public SheetFixture<CopySheet> {
 protected:
  void SetUp() override {
    fill({"backup"});
    click(0);
  }
  URL source(const std::string& name, const std::string& content) const {
    return URL::file(folder.write(name, content));
  }
  std::string label(std::size_t request) const {
    return request < helpers.requests.size() ? helpers.requests[request].text("label") : "(none)";
  }

  /// Whether files that are dropped on a widget of the window are accepted.
  bool drop(QWidget& target, const QList<QUrl>& urls, Qt::DropActions actions = Qt::CopyAction) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), actions, &data, Qt::LeftButton, {});
    enter.ignore();
    QCoreApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent dropped(QPointF(5, 5), actions, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&target, &dropped);
    EXPECT_EQ(dropped.dropAction(), Qt::CopyAction) << "the files stay where they are";
    return dropped.isAccepted();
  }
  QUrl file(const std::string& name) const {
    return QUrl::fromLocalFile(qt(folder.write(name, testdata::jobText("a")).string()));
  }
};

TEST_F(CopySheetsTest, FilesAreImportedOneAfterTheOtherByKeyboard) {
  importFiles(program().creationContext,
              {source("a.plist", testdata::jobText("a")), source("bad.plist", "<plist>\n<dict>"),
               source("c.plist", testdata::jobText("c"))});
  auto& title = control<QLabel>("importTextField");
  auto& importButton = control<QPushButton>("importButton");
  EXPECT_EQ(title.text(), QStringLiteral("Import – a.plist – 1 of 3"));
  press(Qt::Key_Return);
  EXPECT_THAT(helpers.requests, SizeIs(0)) << "no kind is chosen yet";
  press(Qt::Key_Space);
  EXPECT_TRUE(control<QRadioButton>("kindUserAgentButton").isChecked());
  press(Qt::Key_Return);
  ASSERT_EQ(label(0), "a");
  EXPECT_FALSE(importButton.isEnabled());
  helpers.requests[0].reply({});
  EXPECT_EQ(title.text(), QStringLiteral("Import – bad.plist – 2 of 3"));
  press(Qt::Key_Return);
  EXPECT_THAT(interface.errors, SizeIs(1));
  control<QPushButton>("skipButton").click();
  EXPECT_EQ(title.text(), QStringLiteral("Import – c.plist – 3 of 3"));
  EXPECT_FALSE(control<QPushButton>("skipButton").isVisible());
  press(Qt::Key_Return);
  EXPECT_EQ(label(1), "c");
  EXPECT_FALSE(hasSheet());
}

TEST_F(CopySheetsTest, ACopyNeedsAnotherNameWhichIsKeptIfTheSaveFails) {
  program().menus.perform(Command::Duplicate);
  auto& name = control<QLineEdit>("nameValueTextField");
  EXPECT_EQ(control<QLabel>("duplicateTextField").text(), QStringLiteral("Duplicate – backup"));
  EXPECT_EQ(name.selectedText(), QStringLiteral("backup copy"));
  type("backup");
  press(Qt::Key_Return);
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(name.selectedText(), QStringLiteral("backup"));
  type("a/b");
  press(Qt::Key_Return);
  EXPECT_FALSE(hasSheet());
  EXPECT_EQ(label(0), "a/b");
  EXPECT_THAT(helpers.requests[0].text("path"), EndsWith("/a_b.plist"));

  helpers.requests[0].failure(Error{.code = Error::Code::Io, .message = "full"});
  settle();
  click(0);
  program().menus.perform(Command::Duplicate);
  EXPECT_EQ(control<QLineEdit>("nameValueTextField").text(), QStringLiteral("a/b"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
}

TEST_F(CopySheetsTest, ALongNameDoesntWidenTheSheet) {
  const std::string name = "\u0646\u0633\u062e <b> & \U0001F600 " + std::string(300, 'n') + ".plist";
  importFiles(program().creationContext, {source("folder/" + name.substr(0, 200) + ".plist", testdata::jobText("a"))});
  auto& shown = sheet<ImportViewController>();
  EXPECT_LE(shown.width(), shown.fontMetrics().averageCharWidth() * 90);
  EXPECT_THAT(utf8(control<QLabel>("importTextField").text()), HasSubstr("…"));
  EXPECT_THAT(utf8(control<QLabel>("importTextField").toolTip()), HasSubstr("nnn"));
}

TEST_F(CopySheetsTest, JobFilesDroppedOnTheWindowAreImported) {
  const QUrl job = file("a.plist");
  const struct {
    const char* what;
    QList<QUrl> urls;
    Qt::DropActions actions;
    bool isTaken;
  } table[] = {
      {"a job file", {job}, Qt::CopyAction | Qt::MoveAction, true},
      {"one of two", {file("x.txt"), job}, Qt::CopyAction, true},
      {"capital letters", {file("B.PLIST")}, Qt::CopyAction, true},
      {"another file", {file("x.txt")}, Qt::CopyAction, false},
      {"from elsewhere", {QUrl(QStringLiteral("https://example.org/a.plist"))}, Qt::CopyAction, false},
      {"to be moved only", {job}, Qt::MoveAction, false},
      {"nothing", {}, Qt::CopyAction, false},
  };
  for (const auto& row : table) {
    EXPECT_EQ(drop(window(), row.urls, row.actions), row.isTaken) << row.what;
    EXPECT_EQ(hasSheet(), row.isTaken) << row.what;
    if (row.isTaken) sheet<ImportViewController>().reject();
  }
  importFiles(program().creationContext, {source("a.plist", testdata::jobText("a"))});
  EXPECT_FALSE(drop(window(), {job})) << "a sheet is open";
  sheet<ImportViewController>().reject();
  EXPECT_FALSE(hasSheet());
  program().editing.setUnsavedChanges(true);
  EXPECT_FALSE(drop(window(), {job})) << "with unsaved changes";
}

TEST_F(CopySheetsTest, EveryViewAndTheDetailsAcceptJobFiles) {
  const QUrl job = file("a.plist");
  const auto take = [&](QWidget& target, const std::string& what) {
    EXPECT_TRUE(drop(target, {job})) << what;
    if (hasSheet()) sheet<ImportViewController>().reject();
    EXPECT_FALSE(hasSheet());
  };
  for (QWidget* detail : window().details().currentWidget()->findChildren<QWidget*>()) {
    if (detail->isVisible()) take(*detail, detail->metaObject()->className());
  }
  for (const Mode mode : {Mode::Grid, Mode::Tree, Mode::Timeline, Mode::List}) {
    program().mainWindow.switchMode(mode);
    settle();
    testdata::settle();
    take(*window().childAt(window().width() / 4, window().height() / 2), std::to_string(static_cast<int>(mode)));
  }
  const QUrl folderOfThatName = QUrl::fromLocalFile(qt(folder.write("d.plist/inside", "").parent_path().string()));
  EXPECT_FALSE(drop(window(), {folderOfThatName}));
}

class RestoreSheetTest : public SheetFixture<RestoreSheet> {
 protected:
  /// Leaves the job as a deletion does.
  void lose(const std::string& name) {
    const auto file = writeJob(Kind::userAgent, name);
    scan();
    ASSERT_TRUE(program().deletedJobs.keep(*jobNamed(name)));
    std::filesystem::remove(file);
    scan();
    clock.now += 1;
  }
  QTreeWidget& open() {
    (void)window();
    program().menus.perform(Command::RestoreDeleted);
    return *sheet().findChild<QTreeWidget*>();
  }
};

TEST_F(RestoreSheetTest, TheJobChosenByKeyboardIsRestored) {
  lose("older");
  lose("newer");
  (void)open();
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_THAT(helpers.requests, SizeIs(0));
  auto& rows = open();
  ASSERT_EQ(rows.topLevelItemCount(), 2);
  EXPECT_EQ(rows.topLevelItem(0)->text(0), QStringLiteral("newer"));
  EXPECT_EQ(utf8(rows.topLevelItem(1)->text(2)),
            "\u2066" + (path(Kind::userAgent) / "older.plist").string() + "\u2069");
  EXPECT_TRUE(rows.hasFocus());
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_FALSE(hasSheet());
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(helpers.requests.front().text("label"), "older");
}

TEST_F(RestoreSheetTest, AnEmptyListSaysSo) {
  auto& rows = open();
  ASSERT_EQ(rows.topLevelItemCount(), 1);
  EXPECT_EQ(rows.topLevelItem(0)->text(0), QStringLiteral("No Deleted Jobs"));
  EXPECT_FALSE(control<QPushButton>("restoreButton").isEnabled());
  press(Qt::Key_Return);
  EXPECT_TRUE(hasSheet());
}

}  // namespace

}  // namespace mirvel::ui
