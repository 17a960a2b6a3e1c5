#include <QAbstractScrollArea>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>

#include "ui/scripts/ScriptTextFixture.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

class ScriptTextMenuTest : public ScriptTextFixture {
 protected:
  ScriptTextMenuTest() {
    m_text->resize(400, 200);
    m_text->show();
    testdata::settle();
  }
  ~ScriptTextMenuTest() override { QApplication::clipboard()->clear(); }

  /// The context menu of the script.
  QMenu* menu() {
    auto* const area = qobject_cast<QAbstractScrollArea*>(&innerWidget(*m_text));
    const QPoint middle = area->viewport()->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, middle, area->viewport()->mapToGlobal(middle));
    QApplication::sendEvent(area->viewport(), &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
  }
  /// The initials of the enabled items: "UCS" for Undo, Cut and Select All.
  static std::string enabled(const QMenu& menu) {
    std::string initials;
    for (const QAction* action : menu.actions()) {
      if (action->isEnabled() && !action->isSeparator()) initials += utf8(action->text().remove(QLatin1Char('&')))[0];
    }
    return initials;
  }
  void choose(const char* title) {
    QMenu* const shown = menu();
    ASSERT_NE(shown, nullptr);
    for (QAction* action : shown->actions()) {
      if (action->text() == QLatin1String(title)) action->trigger();
    }
    shown->close();
    testdata::settle();
  }

  const std::unique_ptr<ScriptText> m_text{makeText()};
};

}  // namespace

TEST_P(ScriptTextMenuTest, MenuHasTheEditCommandsAndDelete) {
  const QPointer<QMenu> shown = menu();
  ASSERT_NE(shown, nullptr);
  std::vector<std::string> titles;
  for (const QAction* action : shown->actions()) titles.push_back(utf8(action->text()));
  EXPECT_EQ(titles,
            (std::vector<std::string>{"&Undo", "&Redo", "", "Cu&t", "&Copy", "&Paste", "Delete", "", "Select &All"}));
  shown->close();
  testdata::settle();
  EXPECT_EQ(shown, nullptr) << "deleted when it closes";
}

TEST_P(ScriptTextMenuTest, CommandsWorkWhereEnabled) {
  QTest::keyClicks(&innerWidget(*m_text), QStringLiteral("ab"));
  const struct {
    const char* command;
    const char* text;
    const char* enabled;  ///< initials of the items enabled in this state
  } rows[] = {
      {"&Undo", "", "RS"},       {"&Redo", "ab", "US"},       {"Select &All", "ab", "UCCDS"}, {"&Copy", "ab", "UCCPDS"},
      {"Delete", "", "UPS"},     {"&Undo", "ab", nullptr},    {"Select &All", "ab", nullptr}, {"Cu&t", "", "UPS"},
      {"&Paste", "ab", nullptr}, {"&Paste", "abab", nullptr},
  };
  for (const auto& row : rows) {
    choose(row.command);
    EXPECT_EQ(m_text->text(), row.text) << row.command;
    if (!row.enabled) continue;
    QMenu* const shown = menu();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(enabled(*shown), row.enabled) << row.command;
    shown->close();
    testdata::settle();
  }
}

MIRVEL_TEST_EDITINGS(ScriptTextMenuTest);

}  // namespace mirvel::ui
