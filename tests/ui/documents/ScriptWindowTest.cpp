#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "core/documents/ScriptDocuments.h"
#include "ui/Misfits.h"
#include "ui/app/ApplicationFixture.h"
#include "ui/documents/EditScriptViewController.h"
#include "ui/documents/FindBar.h"
#include "ui/documents/ScriptWindowController.h"
#include "ui/scripts/ScriptText.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using testdata::bytes;
using testdata::eventually;

/// The complete application with real windows, files and threads.
class ScriptWindowTest : public ApplicationFixture {
 protected:
  void SetUp() override { start(); }

  ScriptDocuments& documents() { return program().documents; }
  fs::path write(const std::string& name, const std::string& content) const { return m_scripts.write(name, content); }
  ScriptWindowController& open(const fs::path& file) {
    const std::size_t before = documents().documents().size();
    program().shell.editScript(URL::file(file));
    EXPECT_TRUE(eventually([&] {
      return documents().documents().size() > before && !documents().documents().back()->isLoading();
    })) << file;
    auto& window = static_cast<ScriptWindowController&>(documents().documents().back()->view());
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    return window;
  }
  ScriptDocument& document(std::size_t index) { return *documents().documents().at(index); }
  static void type(ScriptWindowController& window, const char* keys) {
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    window.content().text().setFocus();
    QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(keys));
  }
  /// Presses a button of the next question, by its text, once it is shown.
  void answerNext(const QString& button) {
    m_answers.append(button);
    QTimer::singleShot(0, &m_context, [this] { answer(); });
  }
  const QString& lastQuestion() const { return m_question; }

 private:
  void answer() {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (m_answers.isEmpty()) return;
    if (!box) return QTimer::singleShot(5, &m_context, [this] { answer(); });
    m_question = box->text();
    for (QAbstractButton* each : box->buttons()) {
      if (each->text().remove(QLatin1Char('&')) != m_answers.first()) continue;
      m_answers.removeFirst();
      if (!m_answers.isEmpty()) QTimer::singleShot(5, &m_context, [this] { answer(); });
      return each->click();
    }
    ADD_FAILURE() << "no such button: " << m_answers.takeFirst().toStdString();
    box->reject();
  }

  const testdata::TemporaryFolder m_scripts;
  QObject m_context;
  QStringList m_answers;
  QString m_question;
};

TEST_F(ScriptWindowTest, TheSaveCommandSavesTheScriptOfTheKeyWindow) {
  const fs::path first = write("first", "#!/bin/sh\n");
  const fs::path second = write("second", "#!/bin/sh\n");
  ScriptWindowController& one = open(first);
  ScriptWindowController& two = open(second);
  type(one, "x");
  type(two, "y");
  ASSERT_TRUE(program().menus.isEnabled(Command::Save));
  program().menus.perform(Command::Save);
  EXPECT_TRUE(eventually([&] { return !document(1).isEdited(); }));
  EXPECT_EQ(bytes(second), "y#!/bin/sh\n");
  EXPECT_EQ(bytes(first), "#!/bin/sh\n");
  EXPECT_TRUE(one.isWindowModified());
  EXPECT_FALSE(two.isWindowModified());
  window().activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
  EXPECT_FALSE(program().shell.saveScript);
}

TEST_F(ScriptWindowTest, AChangeByAnotherProgramIsAskedAbout) {
  const fs::path file = write("script", "a\n");
  ScriptWindowController& window = open(file);
  type(window, "mine");
  write("script", "theirs\n");
  answerNext(QStringLiteral("Load File"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(eventually([&] { return window.content().text().text() == "theirs\n"; }));
  EXPECT_TRUE(lastQuestion().contains(QLatin1String("script")));
  EXPECT_EQ(bytes(file), "theirs\n");
  EXPECT_FALSE(document(0).isEdited());
}

TEST_F(ScriptWindowTest, QuittingAsksAboutEachScriptAndCancelKeepsAllWindows) {
  const fs::path first = write("first", "a\n");
  const fs::path second = write("second", "a\n");
  type(open(first), "x");
  type(open(second), "y");
  answerNext(QStringLiteral("Don’t Save"));
  answerNext(QStringLiteral("Cancel"));
  window().close();
  EXPECT_TRUE(eventually([&] { return lastQuestion().contains(QLatin1String("second")); }));
  testdata::settle();
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(documents().documents().size(), 2U);
  EXPECT_TRUE(document(0).isEdited());
  answerNext(QStringLiteral("Don’t Save"));
  answerNext(QStringLiteral("Save"));
  window().close();
  EXPECT_TRUE(eventually([&] { return !window().isVisible(); }));
  EXPECT_TRUE(documents().documents().empty());
  EXPECT_EQ(bytes(first) + bytes(second), "a\nya\n");
}

TEST_F(ScriptWindowTest, FindsAndReplacesText) {
  ScriptWindowController& window = open(write("script", "one two\none three\n"));
  FindBar& bar = window.content().findBar();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(bar.isVisible());
  auto* const field = bar.findChild<QLineEdit*>(QStringLiteral("find"));
  field->setText(QStringLiteral("ONE"));
  bar.findChild<QLineEdit*>(QStringLiteral("replacement"))->setText(QStringLiteral("1"));
  bar.findChild<QPushButton*>(QStringLiteral("replaceAll"))->click();
  EXPECT_EQ(window.content().text().text(), "1 two\n1 three\n");
  bar.findNext();
  EXPECT_EQ(bar.findChild<QLabel*>(QStringLiteral("message"))->text(), QStringLiteral("Not found"));
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_FALSE(bar.isVisible());
}

TEST_F(ScriptWindowTest, EverythingFitsIntoTheWindow) {
  ScriptWindowController& window = open(write("script", "#!/bin/sh\r\necho\r\n"));
  window.content().findBar().open();
  EXPECT_GT(testdata::expectAllFits(window, "script window"), 8);
  EXPECT_EQ(document(0).form().lineEnd, LineEnd::Windows);
  if (const QByteArray picture = qgetenv("MIRVEL_TEST_PICTURE"); !picture.isEmpty()) {
    EXPECT_TRUE(window.grab().save(QString::fromLocal8Bit(picture)));
  }
}

}  // namespace
}  // namespace mirvel::ui
