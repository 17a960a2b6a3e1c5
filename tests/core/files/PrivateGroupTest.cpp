#include "core/files/FileTrust.h"

#include <gtest/gtest.h>

#include <cerrno>

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

#ifdef __linux__
TEST(PrivateGroupTest, AUserDatabaseThatCannotBeReadToItsEndTellsNothing) {
  const struct {
    int failure;  ///< what the second entry's place holds
    bool isKnown;
  } rows[] = {{0, true}, {ENOENT, true}, {ERANGE, false}, {EIO, false}, {EINTR, false}, {EMFILE, false}};
  for (const auto& row : rows) {
    char name[] = "ann";
    passwd ann{};
    ann.pw_name = name, ann.pw_uid = 1000, ann.pw_gid = 100;
    int calls = 0;
    const auto users = usersWithPrimary(100, [&](passwd*& found) {
      if (++calls > 1) return row.failure;
      found = &ann;
      return 0;
    });
    ASSERT_EQ(users.has_value(), row.isKnown) << row.failure;
    EXPECT_EQ(users ? users->size() : 1U, 1U) << row.failure;
  }
}
#endif

}  // namespace
}  // namespace mirvel
