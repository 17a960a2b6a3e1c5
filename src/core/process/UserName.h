#pragma once

#include <string>
#include <string_view>

namespace mirvel {

/// The person's name in the comment field of the user database: up to the first comma, `&` standing for the login name
/// with a capital (passwd(5) of BSD); the login name if there is none.
std::string personName(std::string_view comment, const std::string& login);

/// The login name of the user who runs the program; the user's number if the user database doesn't know it. From any
/// thread.
std::string loginName();

/// That of the user who runs the program; the user's number if the user database doesn't know it. From any thread.
std::string fullUserName();

}  // namespace mirvel
