#include "ui/scripts/scintilla/ScriptStyle.h"

#include <Qsci/qscilexer.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <cmath>

#include "ui/scripts/ScintillaText.h"
#include "ui/scripts/ScriptLook.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr double leastContrast = 4.5;

constexpr SyntaxType types[] = {
    SyntaxType::none, SyntaxType::shell, SyntaxType::perl,       SyntaxType::php,         SyntaxType::python,
    SyntaxType::ruby, SyntaxType::swift, SyntaxType::lua,        SyntaxType::tcl,         SyntaxType::tex,
    SyntaxType::xml,  SyntaxType::awk,   SyntaxType::javaScript, SyntaxType::appleScript,
};

/// Converts a colour of Scintilla, which has red in the lowest byte.
QColor fromScintilla(long color) {
  return QColor(static_cast<int>(color & 0xff), static_cast<int>(color >> 8 & 0xff),
                static_cast<int>(color >> 16 & 0xff));
}

QColor front(const QsciScintilla& text, int style) {
  return fromScintilla(text.SendScintilla(QsciScintilla::SCI_STYLEGETFORE, style));
}

QColor back(const QsciScintilla& text, int style) {
  return fromScintilla(text.SendScintilla(QsciScintilla::SCI_STYLEGETBACK, style));
}

/// The colour of the first character of a piece of the text.
QColor colorOf(const QsciScintilla& text, const std::string& piece) {
  text.SendScintilla(QsciScintilla::SCI_COLOURISE, 0UL, -1L);
  const auto place = static_cast<unsigned long>(utf8(text.text()).find(piece));
  const long indicators = text.SendScintilla(QsciScintilla::SCI_INDICATORALLONFOR, place);
  for (unsigned long indicator = 0; indicator < 32; ++indicator) {
    if (indicators & 1L << indicator) {
      return fromScintilla(text.SendScintilla(QsciScintilla::SCI_INDICGETFORE, indicator));
    }
  }
  return front(text, static_cast<int>(text.SendScintilla(QsciScintilla::SCI_GETSTYLEAT, place)));
}

class ScriptStyleTest : public testing::Test {
 protected:
  ~ScriptStyleTest() override { QApplication::setPalette(m_before); }

  void expectEveryStyleReadable(const std::string& context) {
    for (int style = 0; style <= QsciScintilla::STYLE_MAX; ++style) {
      const QColor color = front(m_editor, style);
      EXPECT_GE(contrast(color, back(m_editor, style)), leastContrast) << context << ", style " << style;
      EXPECT_GE(contrast(color, look().currentLine), leastContrast) << context << ", style " << style;
      EXPECT_GE(contrast(color, look().faultyLine), leastContrast) << context << ", style " << style;
      EXPECT_EQ(back(m_editor, style), m_text.palette().color(QPalette::Base)) << context << ", style " << style;
    }
  }

  std::string fontName(int style) {
    std::string name(256, '\0');
    m_editor.SendScintilla(QsciScintilla::SCI_STYLEGETFONT, static_cast<unsigned long>(style),
                           static_cast<void*>(name.data()));
    return name.c_str();
  }

  ScriptLook look() { return scriptLook(m_text.palette()); }
  QColor comment() { return look().color(ScriptRole::Comment); }

  ScintillaText m_script;
  ScriptText& m_text = m_script.text;
  ScintillaEditor& m_editor = m_script.editor();

 private:
  QPalette m_before = QApplication::palette();
};

}  // namespace

TEST_F(ScriptStyleTest, LanguagesAreColouredByRole) {
  using Type = SyntaxType;
  using Role = ScriptRole;
  const struct {
    Type type;
    std::string text;
    std::vector<std::pair<std::string, Role>> pieces;
  } rows[] = {
      {Type::none, "#!/bin/zsh\n\"a\" 12", {{"#!", Role::Text}}},
      {Type::none, "if \"a\" 12", {{"\"a\"", Role::Text}}},
      {Type::awk, "print \"a\"", {{"\"a\"", Role::Text}}},
      {Type::shell, "#!/bin/zsh\n", {{"#!", Role::Comment}}},
      {Type::shell, "a # why\n", {{"# why", Role::Comment}}},
      {Type::shell, "echo \"a\" 'b'\n", {{"\"a\"", Role::String}, {"'b'", Role::String}}},
      {Type::shell, "x=12\n", {{"12", Role::Number}}},
      {Type::shell, "if true\n", {{"if", Role::Keyword}}},
      {Type::shell, "a $HOME\n", {{"$HOME", Role::Variable}}},
      {Type::shell, "a ${HOME}\n", {{"${", Role::Variable}}},
      {Type::shell, "a `date`\n", {{"`date", Role::Pattern}}},
      {Type::shell, "cat <<E\nhere\nE\n", {{"here", Role::String}}},
      {Type::shell, "file name\n", {{"name", Role::Text}}},
      {Type::perl, "my $x = 1;\n", {{"my", Role::Keyword}, {"$x", Role::Variable}}},
      {Type::perl, "$l =~ s/a/b/;\n", {{"s/a", Role::Pattern}}},
      {Type::perl, "print 'a'; # b\n", {{"# b", Role::Comment}}},
      {Type::perl, "print \"a $x\";\n", {{"$x", Role::Variable}}},
      {Type::php,
       "<?php echo 'a'; // b\n?><p>",
       {{"echo", Role::Keyword}, {"'a'", Role::String}, {"// b", Role::Comment}, {"<p", Role::Keyword}}},
      {Type::php, "<?php $x = 12;\n", {{"$x", Role::Variable}, {"12", Role::Number}}},
      {Type::php, "<?php echo \"a {$x}\";\n", {{"$x", Role::Variable}}},
      {Type::php, "#!/usr/bin/php\n<?php\n", {{"#!", Role::Comment}}},
      {Type::python, "def run(a):\n", {{"def", Role::Keyword}, {"run", Role::Name}}},
      {Type::python, "@once\n", {{"@once", Role::Pattern}}},
      {Type::python, "a = f\"b\"\n", {{"f\"b", Role::String}}},
      {Type::python, "a = 'b\n", {{"'b", Role::Error}}},
      {Type::python, "\"\"\"a\nb\"\"\"\n", {{"b\"", Role::String}}},
      {Type::ruby, "class Job\nend\n", {{"Job", Role::Name}, {"end", Role::Keyword}}},
      {Type::ruby, "a = :b\n", {{":b", Role::Pattern}}},
      {Type::ruby, "@a = /b/\n", {{"@a", Role::Variable}}},
      {Type::ruby, "# a\n", {{"# a", Role::Comment}}},
      {Type::swift, "#!/usr/bin/swift\n", {{"#!", Role::Comment}, {"usr", Role::Comment}}},
      {Type::swift, "guard let a else\n", {{"guard", Role::Keyword}}},
      {Type::swift, "let a: String\n", {{"String", Role::Name}}},
      {Type::swift, "let a = \"\"\"\nb \"c\" d\n\"\"\"\n", {{"d\n", Role::String}}},
      {Type::swift, "// a\n", {{"// a", Role::Comment}}},
      {Type::swift, "#if DEBUG\nlet a = 1\n#endif\n", {{"let", Role::Keyword}}},
      {Type::javaScript, "const a = 'b';\n", {{"const", Role::Keyword}}},
      {Type::javaScript, "const a = `b`;\n", {{"`b", Role::String}}},
      {Type::javaScript, "#!/usr/bin/env node\n", {{"node", Role::Comment}}},
      {Type::javaScript, "async function run() {}\n", {{"async", Role::Keyword}}},
      {Type::lua, "local a = 'b' -- c\n", {{"-- c", Role::Comment}}},
      {Type::tcl, "set a $b\n", {{"$b", Role::Variable}}},
      {Type::xml, "<a b=\"c\"/>\n", {{"\"c\"", Role::String}}},
  };
  for (const auto& row : rows) {
    m_text.setSyntax(row.type);
    m_text.setText(row.text);
    for (const auto& [piece, role] : row.pieces) {
      EXPECT_EQ(colorOf(m_editor, piece).name(), look().color(role).name()) << piece << " in " << row.text;
    }
  }
}

TEST_F(ScriptStyleTest, InterpreterLineLosesItsStyleWithItsMark) {
  m_text.setSyntax(SyntaxType::swift);
  m_text.setText("#!/usr/bin/swift\nlet a\n");
  EXPECT_EQ(colorOf(m_editor, "bin"), comment());
  m_editor.insertAt(QStringLiteral("\n"), 0, 6);
  EXPECT_NE(colorOf(m_editor, "bin"), comment()) << "moved to the second line";
  m_editor.insertAt(QStringLiteral("x"), 0, 0);
  EXPECT_NE(colorOf(m_editor, "/usr"), comment()) << "no mark any more";
}

TEST_F(ScriptStyleTest, OverlongLineTurnsColoursOff) {
  m_text.setSyntax(SyntaxType::perl);
  m_text.setText("# a\n");
  EXPECT_EQ(colorOf(m_editor, "# a"), comment());
  m_editor.insert(QString(20'000, QLatin1Char('(')) + QLatin1Char('\n'));
  EXPECT_NE(colorOf(m_editor, "# a"), comment());
  expectEveryStyleReadable("without colours");
  m_editor.undo();
  EXPECT_EQ(colorOf(m_editor, "# a"), comment());
  EXPECT_EQ(m_text.syntax(), SyntaxType::perl);
}

TEST_F(ScriptStyleTest, EveryStyleHasContrastInEveryPalette) {
  m_text.setText("#!/bin/zsh\n");
  for (const Scheme scheme : {Scheme::Light, Scheme::Dark, Scheme::Light}) {
    for (const SyntaxType type : types) {
      const std::string context =
          "scheme " + std::to_string(static_cast<int>(scheme)) + ", type " + std::to_string(static_cast<int>(type));
      m_text.setSyntax(type);
      QApplication::setPalette(paletteOf(scheme));
      expectEveryStyleReadable(context);
      QApplication::setPalette(paletteOf(scheme == Scheme::Light ? Scheme::Dark : Scheme::Light));
      expectEveryStyleReadable(context + ", changed while shown");
    }
  }
}

TEST_F(ScriptStyleTest, ColoursWithoutContrastAreReplacedByTheTextColour) {
  const QRgb bases[] = {0xffb0b0b0, 0xff8ab8e0, 0xffffc040, 0xff404048, 0xff103c10};
  for (const QRgb base : bases) {
    QPalette palette = paletteOf(QColor::fromRgb(base).lightnessF() > 0.4F ? Scheme::Light : Scheme::Dark);
    palette.setColor(QPalette::Base, QColor::fromRgb(base));
    for (int role = 0; role <= static_cast<int>(ScriptRole::Error); ++role) {
      const QColor color = scriptLook(palette).color(static_cast<ScriptRole>(role));
      EXPECT_GE(contrast(color, palette.color(QPalette::Base)), leastContrast) << base << ", role " << role;
    }
  }
}

TEST_F(ScriptStyleTest, RemovingTheLanguageClearsAllStyles) {
  const std::string text = "#!/bin/sh\n# comment\nls 'x'\n";
  m_text.setText(text);
  m_text.setSyntax(SyntaxType::shell);
  m_editor.SendScintilla(QsciScintilla::SCI_COLOURISE, 0UL, -1L);
  m_text.setSyntax(SyntaxType::none);
  for (unsigned long place = 0; place < text.size(); ++place) {
    EXPECT_EQ(m_editor.SendScintilla(QsciScintilla::SCI_GETSTYLEAT, place), 0) << place;
  }
}

TEST_F(ScriptStyleTest, EveryStyleHasTheSameFont) {
  for (const SyntaxType type : types) {
    m_text.setSyntax(type);
    const int last = m_editor.lexer() ? QsciScintilla::STYLE_MAX : 0;
    for (int style = 0; style <= last; ++style) {
      const std::string which = "type " + std::to_string(static_cast<int>(type)) + ", style " + std::to_string(style);
      const long size = m_editor.SendScintilla(QsciScintilla::SCI_STYLEGETSIZEFRACTIONAL, style);
      EXPECT_EQ(fontName(style), utf8(scriptFont().family())) << which;
      EXPECT_EQ(size, std::lround(scriptFont().pointSizeF() * 100)) << which;
    }
  }
}

}  // namespace mirvel::ui
