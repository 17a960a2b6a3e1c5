#include "ui/scripts/PlainCharacters.h"

#include <gtest/gtest.h>

#include <QTextDocument>

namespace mirvel::ui {

using namespace std::string_literals;

TEST(PlainCharacters, BytesSurviveADocument) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  const std::string rows[] = {
      "",
      "a\nb\r\nc\rd\n\r",
      "é日😀\xEF\xBB\xBF",
      everyByte,
      "\u2028\u2029\uFDD0\uFDD1\uFFFC\uFFFE",
      "\xED\xA0\x80\xED\xB0\x80 \xF4\x90\x80\x80 \xC0\x80",  // surrogates, beyond Unicode, overlong
      "😀\xF0 \xF0\x9F \xF0\x9F\x98 \xE2\x80 \xC3",           // truncated
      "\x80\x80\xF0\x9F\x98\x80\x80"s + std::string(3, '\0'),
  };
  for (const std::string& row : rows) {
    for (const char* end : {"\n", "\r", "\r\n"}) {
      QTextDocument document;
      document.setPlainText(plainCharacters(row, end));
      EXPECT_EQ(bytesOf(document.toRawText(), end), row);
    }
  }
}

TEST(PlainCharacters, ReadableTextIsNotEscaped) {
  EXPECT_EQ(plainCharacters("é😀\r\nb", "\r\n"), QStringLiteral("é😀\nb"));
  EXPECT_EQ(plainCharacters("a\xff", "\n"), QStringLiteral("a") + QChar(0xDCFF));
  EXPECT_EQ(bytesOf(QString(QChar(QChar::LineSeparator)), "\r"), "\r") << "as Shift-Return makes it";
}

}  // namespace mirvel::ui
