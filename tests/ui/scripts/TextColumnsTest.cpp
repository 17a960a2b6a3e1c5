#include "ui/scripts/scintilla/TextColumns.h"

#include <gtest/gtest.h>

#include <string>

namespace mirvel::ui {

TEST(TextColumns, WidestLineIsFoundAnywhere) {
  const struct {
    std::string text;
    long columns;
  } rows[] = {
      {"", 0},
      {"\n\r\n", 0},
      {"abc", 3},
      {"abc\nde", 3},
      {"ab\r\ncde\r\n", 3},
      {"ab\rcdef", 4},
      {"\t", 4},
      {"abc\td", 5},
      {"abcd\te", 9},
      {"éé", 2},
      {"日本", 4},
      {"😀", 2},
      {"\xff\xfe", 4},
      {"a\n" + std::string(1000, 'x') + "\nb", 1000},
  };
  for (const auto& row : rows) EXPECT_EQ(widestLine(row.text, 4), row.columns) << row.text;
}

}  // namespace mirvel::ui
