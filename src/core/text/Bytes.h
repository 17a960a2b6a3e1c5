#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Bytes as text, digests and random bytes, by libcrypto. Thread-safe.
namespace mirvel {

/// Two lower-case hexadecimal digits for each byte.
std::string toHex(std::string_view bytes);
/// The bytes of such text, with digits of either case; none for an odd number of digits or any other character.
std::optional<std::string> fromHex(std::string_view digits);
/// Hexadecimal digits of the number, at least `digits` of them: "007f" of 0x7F and 4.
std::string toHex(unsigned number, int digits);

/// Standard base64 text with its padding and without line ends (RFC 4648, section 4).
std::string toBase64(std::string_view bytes);
void appendBase64(std::string& text, std::string_view bytes);
/// The bytes of such text; none for anything else: white space, missing padding, or unused bits that aren't zero.
std::optional<std::string> fromBase64(std::string_view text);

/// The bytes of a SHA-256 digest.
struct Digest {
  std::array<char, 32> bytes{};

  operator std::string_view() const { return {bytes.data(), bytes.size()}; }
};

/// Null if the crypto library can't make it.
std::optional<Digest> sha256(std::string_view bytes);

/// So many bytes that nobody can guess; none if the crypto library has no source of randomness.
std::optional<std::string> randomBytes(std::size_t count);
/// A new random UUID (RFC 9562, version 4) in its standard text form, in upper case. Never fails: without the crypto
/// library's randomness it is as random as the system allows, so it names things but guards nothing.
std::string makeUuid();
/// Compares in a time that depends on the lengths only, so that it reveals nothing about a secret.
bool isSameSecret(std::string_view a, std::string_view b);

}  // namespace mirvel
