#include <gmock/gmock.h>

#include <QDialog>
#include <QPushButton>
#include <QScrollBar>

#include "core/messages/Replies.h"
#include "support/FakeRunSource.h"
#include "ui/Misfits.h"
#include "ui/editor/EditorFixture.h"
#include "ui/mainwindow/ListTableModel.h"
#include "ui/support/Labels.h"

namespace mirvel::ui {
namespace {

using testdata::FakeRunSource;
using testdata::ranOnce;
using testdata::runsNow;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The window with jobs, and reports about them.
class RunsTest : public EditorFixture {
 protected:
  std::string file(const std::string& label) const { return path(Kind::userAgent, label + ".plist"); }
  JobReport failed(const std::string& label) const { return ranOnce(label, file(label), {.code = 7}, clock.now - 100); }
  JobReport running(const std::string& label) const { return runsNow(label, file(label), clock.now - 100); }
  FakeRunSource& source() {
    if (!m_source) m_source = &FakeRunSource::in(program().runs);
    return *m_source;
  }
  void deliver(std::vector<JobReport> reports) {
    source().deliverReports(std::move(reports));
    testdata::settle();
  }
  QVariant at(int row, ListColumn column, int role) {
    return table().model()->index(row, static_cast<int>(column)).data(role);
  }
  /// The texts of the section about runs; empty without one.
  std::string runsText() {
    for (const auto* text : window().details().currentWidget()->findChildren<ValueText*>()) {
      if (text->accessibleName() == QStringLiteral("Runs")) return utf8(text->toPlainText());
    }
    return {};
  }
  QAction* action(const std::string& title) {
    for (auto* found : window().findChildren<QAction*>()) {
      if (found->text() == qt(title)) return found;
    }
    throw std::runtime_error("no action " + title);
  }
  int lastKind() const { return helpers.requests.empty() ? 0 : helpers.requests.back().kind(); }

 private:
  FakeRunSource* m_source = nullptr;
};

TEST_F(RunsTest, TheListShowsStatesAsWordsAndMarksAndKeepsScrollAndSelection) {
  std::vector<std::string> labels;
  for (int i = 0; i < 60; ++i) labels.push_back("job" + std::to_string(10 + i));
  fill(labels);
  click(2);
  table().verticalScrollBar()->setValue(30);
  const int position = table().verticalScrollBar()->value();
  deliver({failed("job11"), running("job12")});
  EXPECT_EQ(at(1, ListColumn::State, Qt::DisplayRole), QStringLiteral("Failed"));
  EXPECT_FALSE(at(1, ListColumn::State, Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_FALSE(at(1, ListColumn::Kind, ListTableModel::markRole).value<QIcon>().isNull());
  EXPECT_EQ(utf8(at(1, ListColumn::Kind, Qt::AccessibleTextRole).toString()), "Ada Lovelace, the last run failed");
  EXPECT_EQ(at(2, ListColumn::State, Qt::AccessibleTextRole), QStringLiteral("Running"));
  EXPECT_TRUE(at(2, ListColumn::Kind, ListTableModel::markRole).isNull());
  EXPECT_EQ(markedJob(table()), "job12");
  EXPECT_EQ(table().verticalScrollBar()->value(), position);
}

TEST_F(RunsTest, WidthsOfTheColumnsFitTheirWords) {
  fill({"a"});
  deliver({failed("a")});
  const int state = table().columnWidth(static_cast<int>(ListColumn::State));
  const int icon = table().style()->pixelMetric(QStyle::PM_SmallIconSize);
  for (const auto word : {"Not loaded", "Stopping", "Running"}) {
    EXPECT_GE(state, table().fontMetrics().horizontalAdvance(QLatin1String(word)) + icon) << word;
  }
  EXPECT_GE(table().columnWidth(static_cast<int>(ListColumn::LastRun)),
            table().fontMetrics().horizontalAdvance(QStringLiteral("Yesterday 10:30 PM")));
}

TEST_F(RunsTest, DetailsFollowTheReportsAndShowTheLastOutputOfAFailure) {
  fill({"a", "b"});
  click(0);
  EXPECT_EQ(runsText(), "") << "nothing is known";
  deliver({running("a")});
  EXPECT_THAT(runsText(), HasSubstr("(process 1234)"));
  EXPECT_THAT(helpers.requests, IsEmpty());
  deliver({running("b")});
  deliver({failed("a")});
  EXPECT_THAT(runsText(), HasSubstr("exit code 7"));
  const auto showsOutput = [&](const char* message) {
    const messages::LogLine line{.seconds = clock.now - 99, .message = message};
    helpers.requests.back().reply(messages::write(messages::Reply(messages::LogLines{.lines = {line}})));
    testdata::settle();
    const auto texts = window().details().currentWidget()->findChildren<ValueText*>();
    return std::any_of(texts.begin(), texts.end(), [&](const ValueText* text) {
      return text->isVisible() && text->toPlainText() == QLatin1String(message);
    });
  };
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_TRUE(showsOutput("no such table"));
  click(1);
  EXPECT_THAT(runsText(), HasSubstr("(process 1234)"));
  EXPECT_THAT(helpers.requests, SizeIs(1));
  click(0);
  deliver({failed("b")});
  click(1);
  ASSERT_THAT(helpers.requests, SizeIs(3));
  EXPECT_TRUE(showsOutput("full")) << "from one failed job to another";
  source().deliver({.removed = {"b"}});
  EXPECT_EQ(runsText(), "Not loaded");
}

TEST_F(RunsTest, ButtonsAndShortcutsGiveTheOrders) {
  fill({"a"});
  click(0);
  deliver({ranOnce("a", file("a"), {})});
  button("Run Now").click();
  EXPECT_EQ(lastKind(), 34);
  EXPECT_THAT(helpers.requests, SizeIs(1));
  deliver({running("a")});
  EXPECT_FALSE(action("Run No&w")->isEnabled());
  EXPECT_EQ(action("Run No&w")->toolTip(), QStringLiteral("The job is already running."));
  button("Stop").click();
  EXPECT_EQ(lastKind(), 35);
  deliver({ranOnce("a", file("a"), {})});
  QTest::keyClick(&window(), Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(lastKind(), 34);
  EXPECT_THAT(helpers.requests, SizeIs(3));
  deliver({running("a")});
  QTest::keyClick(&window(), Qt::Key_Period, Qt::ControlModifier);
  EXPECT_EQ(lastKind(), 35);
  EXPECT_THAT(helpers.requests, SizeIs(4));
}

TEST_F(RunsTest, AJobThatEndsBehindASheetCanBeRunOnceTheSheetIsClosed) {
  fill({"a"});
  click(0);
  deliver({running("a")});
  QDialog sheet(&window());
  sheet.open();
  deliver({runsNow("a", file("a"), clock.now - 50)});
  EXPECT_EQ(button("Stop").text(), QStringLiteral("Stop"));
  deliver({ranOnce("a", file("a"), {})});
  sheet.close();
  testdata::settle();
  button("Run Now").click();
  EXPECT_EQ(lastKind(), 34);
}

TEST_F(RunsTest, AJobThatIsKeptAliveOffersRestartAndDisable) {
  writeJob(Kind::userAgent, "a", {{"KeepAlive", true}});
  (void)window();
  scan();
  click(0);
  deliver({running("a")});
  EXPECT_FALSE(action("Sto&p")->isVisible());
  EXPECT_TRUE(action("Rest&art")->isVisible());
  EXPECT_TRUE(button("Disable").isVisible());
  button("Restart").click();
  EXPECT_EQ(lastKind(), 36);
}

TEST_F(RunsTest, AJobInAnExtraFolderOffersNoOrders) {
  (void)folder.write("extra/a.plist", testdata::jobText("a"));
  ASSERT_TRUE(foundation.defaults.setFolders({folder.path() / "extra"}));
  fill({"b"});
  settleFolders();
  deliver({testdata::reportOf("b", file("b"), {})});
  const auto visibleButtons = [this](const char* title) {
    int count = 0;
    for (const auto* button : window().details().currentWidget()->findChildren<QPushButton*>()) {
      count += button->isVisible() && button->text() == QLatin1String(title) ? 1 : 0;
    }
    return count;
  };
  click(0);
  EXPECT_EQ(visibleButtons("Run Now") + visibleButtons("Show Log"), 2);
  click(1);
  EXPECT_EQ(runsText(), "Not loaded: no job folder links to this file.");
  EXPECT_EQ(visibleButtons("Run Now") + visibleButtons("Show Log"), 0);
}

TEST_F(RunsTest, TheEditorSaysInOneLineWhetherTheJobRuns) {
  edit({});
  deliver({running("a")});
  const auto labels = window().details().currentWidget()->findChildren<ElidedLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const ElidedLabel* label) {
    return label->isVisible() && label->text().contains(QStringLiteral("1234"));
  }));
  deliver({failed("a")});
  EXPECT_FALSE(hasChanges());
}

TEST_F(RunsTest, NothingInTheDetailsIsCutOffInAnyDirectionAtAnyWidth) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    writeJob(Kind::userAgent, "a", {{"KeepAlive", true}});
    (void)window();
    scan();
    click(0);
    JobReport report = failed("a");
    report.nextRun = clock.now + 1000;
    report.missed = {{clock.now - 10, MissedRun::Why::NoHost}};
    deliver({report});
    const std::string longLine(200, 'x');
    helpers.requests.back().reply(messages::write(
        messages::Reply(messages::LogLines{.lines = {{.seconds = clock.now - 99, .message = longLine}}})));
    for (const int width : {420, 700}) {
      window().details().setFixedWidth(width);
      testdata::settle();
      const auto place = std::to_string(width) + (direction == Qt::RightToLeft ? ", right to left" : "");
      EXPECT_GT(testdata::expectAllFits(*window().details().currentWidget(), place), 20);
    }
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

}  // namespace
}  // namespace mirvel::ui
