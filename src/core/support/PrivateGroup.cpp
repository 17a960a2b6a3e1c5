#include "core/support/PrivateGroup.h"

#ifdef __linux__
#include <grp.h>
#endif

#include <algorithm>
#ifdef __linux__
#include <cerrno>
#include <mutex>
#endif

namespace mirvel {

bool GroupUsers::isPrivateTo(uid_t user) const {
  const auto isUser = [user](const User& other) { return other.id == user; };
  const auto isNamesake = [this](const User& other) { return other.name == name; };
  return std::all_of(primary.begin(), primary.end(), isUser) &&
         std::any_of(primary.begin(), primary.end(), isNamesake) &&
         std::all_of(members.begin(), members.end(), [this](const std::string& member) { return member == name; });
}

#ifdef __linux__

namespace {

constexpr std::size_t entrySize = std::size_t{1} << 16U;

/// The user's own entry; none if there is no such user.
std::optional<passwd> entryOf(uid_t user, std::vector<char>& buffer) {
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
  return found ? std::optional(entry) : std::nullopt;
}

/// Where a database isn't listed (large ones in a network often aren't), those in it aren't found.
std::optional<std::vector<GroupUsers::User>> usersInDatabase(gid_t group) {
  static std::mutex mutex;  // there is one position in the list for the whole process
  const std::lock_guard lock(mutex);
  std::vector<char> buffer(entrySize);
  passwd entry{};
  ::setpwent();
  auto result = usersWithPrimary(
      group, [&](passwd*& found) { return ::getpwent_r(&entry, buffer.data(), buffer.size(), &found); });
  ::endpwent();
  return result;
}

}  // namespace

std::optional<std::vector<GroupUsers::User>> usersWithPrimary(gid_t group, const std::function<int(passwd*&)>& next) {
  std::vector<GroupUsers::User> result;
  for (;;) {
    passwd* found = nullptr;
    const int failure = next(found);
    if (failure != 0 && failure != ENOENT) return std::nullopt;
    if (!found) return result;
    if (found->pw_gid == group) result.push_back({found->pw_name, found->pw_uid});
  }
}

bool isPrivateGroup(gid_t group, uid_t user) {
  std::vector<char> buffer(entrySize);
  const auto owner = entryOf(user, buffer);
  if (!owner || owner->pw_gid != group) return false;
  auto primary = usersInDatabase(group);
  if (!primary) return false;
  GroupUsers users{.name = {}, .primary = *std::move(primary), .members = {}};
  users.primary.push_back({owner->pw_name, user});
  struct group entry {};
  struct group* found = nullptr;
  ::getgrgid_r(group, &entry, buffer.data(), buffer.size(), &found);
  if (!found) return false;
  users.name = found->gr_name;
  for (char** member = found->gr_mem; *member; ++member) users.members.emplace_back(*member);
  return users.isPrivateTo(user);
}

std::optional<gid_t> privateGroupOf(uid_t user) {
  std::vector<char> buffer(entrySize);
  const auto entry = entryOf(user, buffer);
  return entry && isPrivateGroup(entry->pw_gid, user) ? std::optional(entry->pw_gid) : std::nullopt;
}

#else

bool isPrivateGroup(gid_t, uid_t) {
  return false;
}

std::optional<gid_t> privateGroupOf(uid_t) {
  return std::nullopt;
}

#endif

}  // namespace mirvel
