#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

namespace mirvel {

/// What the user database (passwd(5)) knows about a user.
struct UserEntry {
  std::string login;
  std::string comment;  ///< the "gecos" field, see `personName`; often empty
  std::string home;     ///< the home folder; not checked, may be empty or relative
  gid_t group = 0;      ///< the primary group
};

/// Looks up a user. nullopt if the database doesn't contain the user or can't be read. May ask a directory server, and
/// thus take long. Thread-safe.
std::optional<UserEntry> userEntry(uid_t user);

/// Whether the user database has a user or a group of this name; nullopt if it can't be read. May take long, like
/// `userEntry`. Thread-safe.
std::optional<bool> isUser(const std::string& name);
std::optional<bool> isGroup(const std::string& name);

/// The full name in a comment field: the part before the first comma, in which `&` means the capitalized login
/// name; the login name if that is blank.
///
///     personName("Anna Example,Room 3", "anna")  // "Anna Example"
///     personName("& Example", "anna")            // "Anna Example"
///     personName("", "anna")                     // "anna"
std::string personName(std::string_view comment, const std::string& login);

/// The login name of the user who runs this process; the user's number if the database doesn't contain the user.
std::string loginName();

/// The full name of the user who runs this process, with `loginName` as the fallback.
std::string fullUserName();

}  // namespace mirvel
