#include "ui/mainwindow/GridItemDelegate.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

namespace mirvel::ui {
namespace {

TEST(NameLinesTest, NamesBreakAtSeparatorsAndAreElidedInTheMiddle) {
  const QFontMetrics metrics{QFont()};
  const struct {
    const char* name;
    const char* asWideAs;  // the width available
    const char* first;
    const char* second;  // a "*" marks the place of the ellipsis
  } rows[] = {
      {"", "mmmm", "", nullptr},
      {"short", "mmmmmm", "short", nullptr},
      {"org.example.backup", "org.example.", "org.example.", "backup"},
      {"org.example.backup", "org.example.b", "org.example.", "backup"},
      {"two words", "two wo", "two", "words"},
      {"a.longwordlongword", "longwordlo", "a.longwo", "rdlongword"},
      {"wwwwwwwwwwwwwwwwwwww", "wwwww", "wwwww", "w*w"},
      {"org.example.one.two.three.backup", "org.example.", "org.example.", "*p"},
  };
  for (const auto& row : rows) {
    const QString name = QString::fromLatin1(row.name);
    const int width = metrics.horizontalAdvance(QString::fromLatin1(row.asWideAs)) + 1;
    const NameLines lines = nameLines(name, metrics, width);
    ASSERT_EQ(lines.lines.size(), row.second ? 2 : 1) << row.name;
    for (const QString& line : lines.lines) EXPECT_LE(metrics.horizontalAdvance(line), width) << row.name;
    if (!row.second) {
      EXPECT_EQ(lines.lines[0], QString::fromLatin1(row.first));
      continue;
    }
    const QStringList kept = QString::fromLatin1(row.second).split(QLatin1Char('*'));
    EXPECT_EQ(lines.isElided, kept.size() == 2) << row.name;
    if (lines.isElided) {
      EXPECT_TRUE(lines.lines[1].startsWith(kept[0]) && lines.lines[1].endsWith(kept[1])) << row.name;
      EXPECT_TRUE(lines.lines[1].contains(QChar(0x2026))) << row.name;
    } else {
      EXPECT_EQ(lines.lines.join(name.contains(QLatin1Char(' ')) ? QStringLiteral(" ") : QString()), name);
    }
  }
}

TEST(NameLinesTest, LinesBreakAtGraphemeBoundaries) {
  const QFontMetrics metrics{QFont()};
  const QString family = QString::fromUtf8("\U0001F468\u200D\U0001F469\u200D\U0001F467");
  const NameLines lines = nameLines(family + family + family, metrics, metrics.horizontalAdvance(family) + 1);
  EXPECT_EQ(lines.lines[0], family);
  EXPECT_EQ(nameLines(family, metrics, 1).lines[0], family) << "one stays, however little room there is";
}

}  // namespace
}  // namespace mirvel::ui
