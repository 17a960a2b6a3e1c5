#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mirvel {

namespace String {

/// The bytes that standard base64 text with its padding stands for (RFC 4648, section 4); none for anything else,
/// white space included.
std::optional<std::string> fromBase64(std::string_view text);

/// Standard base64 text with its padding and without line ends.
std::string toBase64(std::string_view bytes);

}  // namespace String

namespace Data {

/// The 32 bytes of the SHA-256 digest; none if the crypto library can't make it.
std::optional<std::string> sha256Digest(std::string_view bytes);

/// Two lower-case hexadecimal digits for each byte.
std::string hexString(std::string_view bytes);

}  // namespace Data

}  // namespace mirvel
