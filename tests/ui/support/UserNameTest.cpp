#include "ui/support/UserName.h"

#include <gtest/gtest.h>

namespace mirvel::ui {

TEST(UserName, IsThePersonsAndElseTheLogin) {
  const struct {
    const char* comment;
    const char* name;
  } rows[] = {
      {"Ada Lovelace", "Ada Lovelace"},
      {"Ada Lovelace,Room 1,,", "Ada Lovelace"},
      {"& Lovelace", "Ada Lovelace"},
      {"", "ada"},
      {",,,", "ada"},
      {"  ,Room 1", "ada"},
      {" Ada ", "Ada"},
      {"J\xC3\xBCrgen", "J\xC3\xBCrgen"},
  };
  for (const auto& row : rows) EXPECT_EQ(personName(row.comment, "ada"), row.name) << row.comment;
}

}  // namespace mirvel::ui
