#include "core/support/PrivateGroup.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

TEST(PrivateGroupTest, AGroupIsPrivateToItsNamesakeIfNobodyElseHasIt) {
  const GroupUsers::User ann{"ann", 1000}, bob{"bob", 1001}, namesake{"toor", 1000};
  const struct {
    const char* what;
    GroupUsers group;
    bool isPrivate;
  } rows[] = {
      {"hers", {"ann", {ann}, {}}, true},
      {"found twice, and lists her", {"ann", {ann, ann}, {"ann"}}, true},
      {"she has a second name", {"ann", {ann, namesake}, {}}, true},
      {"of all users", {"users", {ann}, {}}, false},
      {"another member", {"ann", {ann}, {"ann", "bob"}}, false},
      {"another one's primary group", {"ann", {ann, bob}, {}}, false},
      {"not her primary group", {"ann", {}, {"ann"}}, false},
      {"his", {"bob", {bob}, {}}, false},
      {"his, with her name", {"ann", {bob}, {}}, false},
  };
  for (const auto& row : rows) EXPECT_EQ(row.group.isPrivateTo(1000), row.isPrivate) << row.what;
}

}  // namespace
}  // namespace mirvel
