#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Permission modes and masks, which are written in octal. A digit stands for one class of users: the nine lowest bits
/// of a mode are those of user, group and others.
namespace mirvel::Octal {

/// Parses octal digits: "022" gives 18. nullopt for an empty text, for anything but octal digits (signs and spaces
/// included), and for numbers above 2^63-1.
std::optional<std::int64_t> toInt(std::string_view text);
/// The digits without leading zeros: 18 gives "22". A negative number has a minus sign.
std::string fromInt(std::int64_t mask);
/// Exactly the digits of user, group and others: "22" gives "022", "1022" gives "022".
std::string preparedString(std::string_view digits);
/// A mask as people write it, with at least three digits: 18 gives "022". A negative number has no leading zeros: -18
/// gives "-22".
std::string displayString(std::int64_t mask);

/// The permissions of one class. In a mask, those that are withheld.
struct Attribute {
  bool read = false;
  bool write = false;
  bool execute = false;

  bool operator==(const Attribute&) const = default;
};

enum class UserClass { User, Group, Others };

/// The permissions of all classes, in the order of `UserClass`.
using Mask = std::array<Attribute, 3>;

/// The permissions of an octal digit; none for another character.
Attribute attribute(char digit);
char maskCharacter(Attribute attribute);
/// The lowest nine bits of a number.
Mask mask(std::int64_t number);
/// The number with its lowest nine bits replaced.
std::int64_t withMask(std::int64_t number, const Mask& mask);

/// The permissions that a new file, or folder, has under a mask, as `ls` shows them: 18 gives "rw-r--r--".
std::string newFile(std::int64_t mask);
std::string newFolder(std::int64_t mask);

}  // namespace mirvel::Octal
