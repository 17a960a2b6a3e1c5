#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <memory>
#include <set>

#include "core/preferences/Themes.h"
#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/scripts/ScriptLook.h"
#include "ui/scripts/ScriptModule.h"
#include "ui/scripts/ScriptSettings.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {
namespace {

constexpr double leastContrast = 4.5;

TEST(ThemeColors, EachRoleIsReadableInEachTheme) {
  for (const Theme theme : Themes::all) {
    const auto palette = themePalette(theme);
    EXPECT_EQ(palette.has_value(), theme != Theme::Automatic);
    if (!palette) continue;
    const ScriptLook look = scriptLook(*palette);
    const double least = theme == Theme::HighContrast ? 7 : leastContrast;
    std::set<QRgb> colors;
    for (std::size_t role = 0; role < ScriptLook::roleCount; ++role) {
      const QColor& color = look.roles.at(role);
      colors.insert(color.rgb());
      for (const QColor& back : {look.base, look.currentLine, look.faultyLine}) {
        const double needed = back == look.base ? least : leastContrast;
        EXPECT_GE(contrast(color, back), needed) << Themes::name(theme) << ", role " << role;
      }
    }
    EXPECT_EQ(colors.size(), ScriptLook::roleCount) << Themes::name(theme) << ": each role has a colour of its own";
    EXPECT_GE(contrast(look.selectedText, look.selection), leastContrast) << Themes::name(theme);
    EXPECT_GE(contrast(look.lineNumber, look.base), leastContrast) << Themes::name(theme);
  }
}

class ThemesTest : public testdata::ProgramFixture {
 protected:
  ~ThemesTest() override {
    m_theme.reset();
    QApplication::setPalette(m_before);
  }

  void follow() { m_theme = std::make_unique<ScriptTheme>(foundation.defaults, program().notifications); }
  ScriptText& show(std::string_view text) {
    m_scripts.emplace_back(makeScriptText(console, foundation.localize, QStringLiteral("script")));
    ScriptText& script = *m_scripts.back();
    script.setText(text);
    script.resize(400, 300);
    script.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&script));
    return script;
  }
  /// The background of the free space below the text.
  static QColor background(ScriptText& script) {
    testdata::settle();
    const QImage image = script.grab().toImage();
    return image.pixelColor(image.width() * 3 / 4, image.height() * 3 / 4);
  }
  void choose(Theme theme) { Themes::choose(theme, foundation.defaults); }
  static QColor base(Theme theme) { return themePalette(theme)->color(QPalette::Base); }

 private:
  const QPalette m_before = QApplication::palette();
  std::unique_ptr<ScriptTheme> m_theme;
  std::vector<std::unique_ptr<ScriptText>> m_scripts;
};

TEST_F(ThemesTest, AThemeReachesOpenScriptsAndNewOnesAtOnce) {
  QApplication::setPalette(paletteOf(Scheme::Light));
  follow();
  ScriptText& first = show("#!/bin/sh\necho\n");
  for (const Theme theme : {Theme::Dark, Theme::HighContrast, Theme::Light}) {
    choose(theme);
    EXPECT_EQ(background(first), base(theme)) << Themes::name(theme);
    EXPECT_EQ(background(show("")), base(theme)) << Themes::name(theme);
    EXPECT_EQ(QApplication::palette().color(QPalette::Base), paletteOf(Scheme::Light).color(QPalette::Base))
        << "only scripts are coloured";
  }
}

TEST_F(ThemesTest, TextAndUndoHistoryStay) {
  follow();
  ScriptText& script = show("one");
  QTest::keyClicks(script.focusProxy(), QStringLiteral("two "));
  ASSERT_EQ(script.text(), "two one");
  int changes = 0;
  QObject::connect(&script, &ScriptText::textChanged, &script, [&] { ++changes; });
  const auto point = script.insertionPoint();
  choose(Theme::HighContrast);
  testdata::settle();
  EXPECT_EQ(changes, 0);
  EXPECT_TRUE(script.isModified());
  EXPECT_EQ(script.insertionPoint(), point);
  QTest::keyClick(script.focusProxy(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(script.text(), "one");
}

TEST_F(ThemesTest, TheAutomaticThemeFollowsTheDesktopAndAChosenOneDoesnt) {
  QApplication::setPalette(paletteOf(Scheme::Light));
  follow();
  ScriptText& script = show("");
  const auto setDesktop = [](Scheme scheme) { QApplication::setPalette(paletteOf(scheme)); };
  setDesktop(Scheme::Dark);
  EXPECT_EQ(background(script), base(Theme::Dark)) << "no theme was ever chosen";
  choose(Theme::Light);
  setDesktop(Scheme::Light);
  setDesktop(Scheme::Dark);
  EXPECT_EQ(background(script), base(Theme::Light));
  choose(Theme::Automatic);
  EXPECT_EQ(background(script), base(Theme::Dark));
  setDesktop(Scheme::Light);
  EXPECT_EQ(background(script), base(Theme::Light));
  ASSERT_TRUE(foundation.defaults.setCurrentTheme("a theme of a later version"));
  setDesktop(Scheme::Dark);
  EXPECT_EQ(background(script), base(Theme::Dark));
}

TEST_F(ThemesTest, LineNumbersFollowTheSetting) {
  ScriptText& script = show("one\ntwo\n");
  followLineNumbers(script, foundation.defaults);
  const auto picture = [&] {
    testdata::settle();
    return script.grab().toImage();
  };
  const QImage with = picture();
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::showLineNumbers, false));
  const QImage without = picture();
  EXPECT_NE(with, without);
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::showLineNumbers, true));
  EXPECT_EQ(picture(), with);
}

}  // namespace
}  // namespace mirvel::ui
