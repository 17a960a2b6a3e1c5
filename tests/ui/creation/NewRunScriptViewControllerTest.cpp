#include "ui/creation/NewRunScriptViewController.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

namespace fs = std::filesystem;

/// The page with the focus on its first button.
class NewRunScriptViewControllerTest : public testdata::ProgramFixture {
 protected:
  NewRunScriptViewControllerTest() {
    fs::create_directories(roots.home);
    m_sheet.changed = [this] { m_page->redraw(); };
    m_page->resize(520, 300);
    m_page->show();
    QApplication::setActiveWindow(m_page.get());
    button(0).setFocus();
    testdata::settle();
  }

  /// The buttons: choose, create, save.
  QPushButton& button(int index) { return *m_page->findChildren<QPushButton*>().at(index); }
  ScriptText* text() { return m_page->findChild<ScriptText*>(); }
  bool isTextShown() { return text() && text()->isVisible(); }
  bool hasFocus(const QWidget* widget) { return widget && QApplication::focusWidget() == widget; }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    testdata::settle();
  }
  void type(const std::string& typed) {
    for (const char c : typed) {
      if (c == '\n')
        key(Qt::Key_Return);
      else
        QTest::keyClick(QApplication::focusWidget(), c);
    }
  }
  void createNew() {
    button(1).setFocus();
    key(Qt::Key_Space);
    ASSERT_TRUE(isTextShown());
  }
  void click(int index, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(&button(index), Qt::LeftButton, modifiers);
    testdata::settle();
  }
  /// The checked buttons, the Save button if it is visible, and what is below them.
  std::string shown() {
    const auto* const hint = m_page->findChild<QLabel*>();
    return std::string(button(0).isChecked() ? "choose " : "") + (button(1).isChecked() ? "create " : "") +
           (button(2).isVisible() ? "save " : "") +
           (isTextShown()       ? "text"
            : hint->isVisible() ? "hint"
                                : "nothing");
  }

  NewSheet m_sheet{.context = program().creationContext, .job = {}};
  NewRunScript m_script{m_sheet};
  const std::unique_ptr<NewRunScriptViewController> m_page =
      std::make_unique<NewRunScriptViewController>(program().creationContext, m_script);
};

}  // namespace

TEST_F(NewRunScriptViewControllerTest, AScriptIsWrittenAndSavedByKeyboard) {
  EXPECT_EQ(text(), nullptr) << "created when it is needed";
  EXPECT_EQ(shown(), "hint");
  key(Qt::Key_Tab);
  key(Qt::Key_Space);
  ASSERT_EQ(shown(), "create save text");
  EXPECT_TRUE(hasFocus(text()->focusProxy()));
  EXPECT_EQ(text()->text(), NewRunScript::defaultText);
  EXPECT_EQ(text()->insertionPoint(), NewRunScript::defaultText.size());
  EXPECT_EQ(text()->syntax(), SyntaxType::shell);

  key(Qt::Key_A, Qt::ControlModifier);
  key(Qt::Key_Delete);
  EXPECT_FALSE(button(2).isEnabled()) << "an empty text can't be saved";
  type("#!/usr/bin/env python3\nprint(1)\n");
  EXPECT_EQ(text()->syntax(), SyntaxType::python);
  interface.savePath = roots.home / "job.py";
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  ASSERT_TRUE(hasFocus(&button(2))) << "Save is before the text";
  key(Qt::Key_Space);
  EXPECT_EQ(m_script.state(), NewRunScript::State::Ready);
  EXPECT_EQ(testdata::bytes(*interface.savePath), "#!/usr/bin/env python3\nprint(1)\n");
  EXPECT_EQ(shown(), "choose nothing");
  EXPECT_TRUE(hasFocus(&button(0)));
  EXPECT_EQ(utf8(button(0).text()), "~/job.py");
}

TEST_F(NewRunScriptViewControllerTest, ASaveThatFailsOrIsCancelledKeepsTextAndUndo) {
  createNew();
  type("ls");
  const std::string typed = std::string(NewRunScript::defaultText) + "ls";
  for (const auto& path : {std::optional<fs::path>(roots.home / "missing" / "x.sh"), std::optional<fs::path>()}) {
    interface.savePath = path;
    click(2);
    EXPECT_EQ(shown(), "create save text");
    EXPECT_EQ(text()->text(), typed);
    EXPECT_EQ(text()->insertionPoint(), typed.size());
  }
  EXPECT_EQ(interface.errors.size(), 1U);
  text()->setFocus();
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_LT(text()->text().size(), typed.size());
  interface.openPath = folder.write("home/x.sh", "");
  click(0);
  createNew();
  EXPECT_EQ(text()->text(), NewRunScript::defaultText);
}

TEST_F(NewRunScriptViewControllerTest, TheButtonsShowTheStateOfTheScript) {
  const fs::path chosen = folder.write("home/a & b.sh", "");
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[&] { click(0); }, "hint"},  // cancelled
      {[&] { click(1); }, "create save text"},
      {[&] { click(1); }, "create save text"},
      {[&] { click(0); }, "create save text"},
      {[&] { interface.openPath = chosen, click(0); }, "choose nothing"},
      {[&] { interface.openPath.reset(), click(0); }, "choose nothing"},
      {[&] { click(1); }, "create save text"},
      {[&] { m_script.clear(), m_page->redraw(); }, "hint"},
  };
  for (const auto& [step, result] : rows) {
    step();
    EXPECT_EQ(shown(), result) << "row " << &step - &rows[0].first;
  }
}

TEST_F(NewRunScriptViewControllerTest, ALongPathIsElidedAndItsToolTipIsComplete) {
  const std::string name(200, 'x');
  interface.openPath = folder.write("home/a & b/" + name + ".sh", "");
  click(0, Qt::AltModifier);
  EXPECT_TRUE(interface.openPanels.at(0).showsHiddenFiles);
  EXPECT_LE(m_page->width(), 520);
  EXPECT_LE(button(0).geometry().right(), button(1).geometry().left());
  EXPECT_EQ(utf8(button(0).toolTip()), "~/a & b/" + name + ".sh");
  EXPECT_EQ(utf8(button(0).text()), "~/a && b/" + name + ".sh");
  click(1);
  EXPECT_EQ(utf8(button(0).toolTip()), "");
}

}  // namespace mirvel::ui
