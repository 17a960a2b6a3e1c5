#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Encodings of bytes as text, digests and random bytes, with libcrypto. Everything is thread-safe.
namespace mirvel {

/// Encodes each byte as two lower-case hexadecimal digits: "007fff".
std::string toHex(std::string_view bytes);
/// Decodes hexadecimal digits of either case. nullopt for an odd number of digits or any other character.
std::optional<std::string> fromHex(std::string_view digits);
/// The number in lower-case hexadecimal with at least `digits` digits: 0x7F and 4 give "007f".
std::string toHex(unsigned number, int digits);

/// Encodes bytes as base64 with padding and without line ends (RFC 4648, section 4). At most 2 GiB.
std::string toBase64(std::string_view bytes);
/// The same, appended to `text`.
void appendBase64(std::string& text, std::string_view bytes);
/// Decodes exactly such text. nullopt for white space, missing padding, other characters, or unused bits that aren't
/// zero. The lenient decoder of property lists is `propertylist::parseData`.
std::optional<std::string> fromBase64(std::string_view text);

/// The 32 bytes of the SHA-256 digest. nullopt only if libcrypto fails.
std::optional<std::string> sha256(std::string_view bytes);

/// Cryptographically secure random bytes. nullopt if libcrypto has no source of randomness.
std::optional<std::string> randomBytes(std::size_t count);
/// A new random UUID (RFC 9562, version 4) in its standard form, in upper case. Never fails: if libcrypto has no
/// randomness, a weaker source is used. So a UUID is good as a name, but not as a secret.
std::string makeUuid();
/// Compares in constant time, so that the duration reveals nothing about a secret except whether the lengths differ.
bool isSameSecret(std::string_view a, std::string_view b);

}  // namespace mirvel
