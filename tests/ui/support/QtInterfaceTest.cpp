#include "ui/support/QtInterface.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <vector>

#include "support/TestData.h"
#include "ui/EventLoop.h"

namespace mirvel::ui {

namespace {

/// Does something to the next dialog of a kind that comes up, once it is up.
template <typename Dialog>
void whenUp(std::function<void(Dialog&)> act) {
  QTimer::singleShot(0, [act = std::move(act)] {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      auto* dialog = qobject_cast<Dialog*>(widget);
      if (dialog && dialog->isVisible()) return act(*dialog);
    }
    whenUp<Dialog>(act);
  });
}

void press(QMessageBox& box, const char* title) {
  for (QAbstractButton* button : box.buttons()) {
    if (button->text() == QString::fromUtf8(title)) return button->click();
  }
  ADD_FAILURE() << "no button " << title;
}

QMessageBox* visibleBox() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* box = qobject_cast<QMessageBox*>(widget);
    if (box && box->isVisible()) return box;
  }
  return nullptr;
}

}  // namespace

class QtInterfaceTest : public testing::Test {
 protected:
  testdata::TemporaryFolder m_folder;
  Defaults m_defaults{m_folder.path() / "preferences.plist"};
  Localize m_localize{"en"};
  QtInterface m_interface{m_defaults, m_localize};
  const Alert m_question{.message = "Save?",
                         .informativeText = "<b>name</b>",
                         .defaultTitle = "Save",
                         .alternateTitle = "Don’t Save",
                         .otherTitle = "Cancel"};
};

TEST_F(QtInterfaceTest, KeysAndClosingPressTheSafeButtonElseTheFirstOrLast) {
  const auto question = [this](const char* alternate, const char* other, std::optional<int> safe = {}) {
    Alert result = m_question;
    result.alternateTitle = alternate;
    result.otherTitle = other;
    result.safeButton = safe;
    return result;
  };
  Alert four = m_question;
  four.cancelTitle = "Later";
  const struct {
    Alert question;
    int whenReturn, whenEscape, whenClosed;
  } rows[] = {
      {m_question, 1000, 1002, 1002},
      {four, 1000, 1003, 1003},
      {question("No", ""), 1000, 1001, 1001},
      {question("", ""), 1000, 1000, 1000},
      {question("", "Cancel"), 1000, 1002, 1002},
      {question("No", "Cancel", Interface::defaultButton), 1000, 1000, 1000},
      {question("No", "Cancel", Interface::otherButton), 1002, 1002, 1002},
      {question("No", "", Interface::defaultButton), 1000, 1000, 1000},
      {question("No", "", Interface::alternateButton), 1001, 1001, 1001},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const auto answer = [&](const std::function<void(QMessageBox&)>& act) {
      whenUp<QMessageBox>(act);
      return m_interface.alert(row.question);
    };
    EXPECT_EQ(answer([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }), row.whenReturn);
    EXPECT_EQ(answer([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }), row.whenEscape);
    EXPECT_EQ(answer([](QMessageBox& box) { box.close(); }), row.whenClosed);
    EXPECT_EQ(answer([](QMessageBox& box) { press(box, "Save"); }), 1000);
    if (!row.question.safeButton) continue;
    EXPECT_EQ(answer([](QMessageBox& box) { QTest::keyClick(box.focusWidget(), Qt::Key_Space); }), row.whenReturn);
  }
}

TEST_F(QtInterfaceTest, ShowsTextAsItIs) {
  whenUp<QMessageBox>([](QMessageBox& box) {
    for (const QLabel* label : box.findChildren<QLabel*>()) EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_EQ(box.informativeText(), QStringLiteral("<b>name</b>"));
    box.close();
  });
  m_interface.alert(m_question);
}

TEST_F(QtInterfaceTest, RemembersThatAQuestionIsSuppressed) {
  Alert question = m_question;
  question.suppression = "NoMore";
  for (const bool isTicked : {false, true}) {
    whenUp<QMessageBox>([&](QMessageBox& box) {
      ASSERT_NE(box.checkBox(), nullptr);
      box.checkBox()->setChecked(isTicked);
      press(box, "Save");
    });
    EXPECT_EQ(m_interface.alert(question), 1000);
    EXPECT_EQ(m_defaults.boolean("NoMore"), isTicked);
  }
  whenUp<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.checkBox(), nullptr) << "offered only with a key";
    box.close();
  });
  m_interface.alert(m_question);
}

TEST_F(QtInterfaceTest, AnAlertWhoseOwnerIsDestroyedIsCancelled) {
  auto window = std::make_unique<QWidget>();
  m_interface.setWindow(window.get());
  whenUp<QMessageBox>([&](QMessageBox&) { window.reset(); });
  EXPECT_EQ(m_interface.alert(m_question), 1002);
}

TEST_F(QtInterfaceTest, ErrorIsShownUntilItIsDismissed) {
  bool wasUp = false;
  whenUp<QMessageBox>([&](QMessageBox& box) {
    wasUp = box.text() == QStringLiteral("It failed") && box.informativeText() == QStringLiteral("badly");
    press(box, "OK");
  });
  m_interface.error("It failed", "badly");
  EXPECT_TRUE(wasUp);
}

class SheetTest : public QtInterfaceTest {
 protected:
  SheetTest() {
    m_window->show();
    m_interface.setWindow(m_window.get());
  }
  void beginSheet() {
    m_interface.beginSheet(m_question, [this](int answer) { m_answers.push_back(answer); });
    EXPECT_TRUE(m_answers.empty()) << "goes on at once";
  }

  std::unique_ptr<QWidget> m_window = std::make_unique<QWidget>();
  std::vector<int> m_answers;
};

TEST_F(SheetTest, AnswersOnce) {
  beginSheet();
  QMessageBox* box = visibleBox();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->windowModality(), Qt::WindowModal);
  press(*box, "Don’t Save");
  testdata::settle();
  m_window->close();
  testdata::settle();
  EXPECT_EQ(m_answers, std::vector{1001});
}

TEST_F(SheetTest, EndsSilentlyWithItsWindow) {
  beginSheet();
  m_window->close();
  testdata::settle();
  EXPECT_EQ(visibleBox(), nullptr);

  m_window->show();
  beginSheet();
  m_window.reset();
  testdata::settle();
  EXPECT_EQ(visibleBox(), nullptr);
  EXPECT_TRUE(m_answers.empty());
}

TEST_F(SheetTest, TheAnswerMayOpenTheNextSheet) {
  m_interface.beginSheet(m_question, [this](int) { beginSheet(); });
  press(*visibleBox(), "Save");
  testdata::settle();
  ASSERT_NE(visibleBox(), nullptr);
  visibleBox()->close();
  testdata::settle();
  EXPECT_EQ(m_answers, std::vector{1002}) << "closing answers like the last button";
}

TEST_F(QtInterfaceTest, SavePanelGivesTheAllowedExtensionAndNeverAFileNotAskedFor) {
  m_folder.write("taken.txt.plist", "");
  const SavePanel panel{.folder = m_folder.path(), .name = "job", .allowedType = "plist"};
  const struct {
    const char* typed;
    std::optional<const char*> chosen;
  } rows[] = {
      {nullptr, "job.plist"}, {"other.plist", "other.plist"}, {"note.txt", "note.txt.plist"}, {"", std::nullopt}};
  for (const auto& row : rows) {
    whenUp<QFileDialog>([&](QFileDialog& dialog) {
      if (!row.chosen) return dialog.reject();
      if (row.typed) dialog.selectFile(QString::fromUtf8(row.typed));
      static_cast<QDialog&>(dialog).accept();
    });
    const auto chosen = m_interface.savePanel(panel);
    EXPECT_EQ(chosen, row.chosen ? std::optional(m_folder.path() / *row.chosen) : std::nullopt);
  }

  whenUp<QFileDialog>([&](QFileDialog& dialog) {
    whenUp<QFileDialog>([](QFileDialog& again) {
      EXPECT_TRUE(again.selectedFiles().value(0).endsWith(QStringLiteral("/taken.txt.plist")));
      again.reject();
    });
    dialog.selectFile(QStringLiteral("taken.txt"));
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_EQ(m_interface.savePanel(panel), std::nullopt);
}

}  // namespace mirvel::ui
