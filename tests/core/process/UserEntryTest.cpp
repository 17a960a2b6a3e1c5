#include "core/process/UserEntry.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

TEST(UserEntryTest, TheCommentFieldContainsTheFullName) {
  const struct {
    const char* comment;
    const char* name;
  } table[] = {
      {"Anna Example", "Anna Example"},
      {"Anna Example,Room 3,,", "Anna Example"},
      {" Anna\t", "Anna"},
      {"& Example", "Anna Example"},
      {"", "anna"},
      {",,,", "anna"},
      {" ,x", "anna"},
  };
  for (const auto& row : table) EXPECT_EQ(personName(row.comment, "anna"), row.name) << row.comment;
  EXPECT_FALSE(fullUserName().empty());
}

}  // namespace
}  // namespace mirvel
