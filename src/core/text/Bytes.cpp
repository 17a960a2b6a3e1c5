#include "core/text/Bytes.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <random>

#include "core/text/Ascii.h"

namespace mirvel {

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";

bool isBase64(char c) {
  return Ascii::isLetter(c) || Ascii::isDigit(c) || c == '+' || c == '/';
}

const unsigned char* unsignedBytes(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

unsigned char* unsignedBytes(std::string& bytes) {
  return reinterpret_cast<unsigned char*>(bytes.data());
}

/// Looked up only once: with `EVP_sha256()`, each digest looks it up, which takes longer than the digest of a small
/// file.
const EVP_MD* sha256Method() {
  static const EVP_MD* const method = EVP_MD_fetch(nullptr, "SHA256", nullptr);
  return method;
}

std::string uuidBytes() {
  constexpr std::size_t size = 16;
  if (auto bytes = randomBytes(size)) return *std::move(bytes);
  std::random_device device;
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(device());
  return bytes;
}

char withBits(char byte, unsigned kept, unsigned set) {
  return static_cast<char>((static_cast<unsigned char>(byte) & kept) | set);
}

}  // namespace

std::string toHex(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text += hexDigits[value >> 4U];
    text += hexDigits[value & 15U];
  }
  return text;
}

std::optional<std::string> fromHex(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const auto high = Ascii::hexValue(digits[i]), low = Ascii::hexValue(digits[i + 1]);
    if (!high || !low) return std::nullopt;
    bytes += static_cast<char>(*high << 4U | *low);
  }
  return bytes;
}

std::string toHex(unsigned number, int digits) {
  std::string text;
  for (; number != 0 || digits > 0; number >>= 4U, --digits) text += hexDigits[number & 15U];
  std::reverse(text.begin(), text.end());
  return text;
}

std::string toBase64(std::string_view bytes) {
  std::string text;
  appendBase64(text, bytes);
  return text;
}

void appendBase64(std::string& text, std::string_view bytes) {
  const std::size_t size = text.size(), added = (bytes.size() + 2) / 3 * 4;
  text.resize(size + added + 1);  // EVP_EncodeBlock adds a null character
  (void)EVP_EncodeBlock(unsignedBytes(text) + size, unsignedBytes(bytes), static_cast<int>(bytes.size()));
  text.resize(size + added);
}

std::optional<std::string> fromBase64(std::string_view text) {
  if (text.empty()) return std::string();
  if (text.size() % 4 != 0 || text.size() > std::numeric_limits<int>::max()) return std::nullopt;
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  if (!std::all_of(text.begin(), text.end() - static_cast<std::ptrdiff_t>(padding), isBase64)) return std::nullopt;

  std::string bytes(text.size() / 4 * 3, '\0');
  if (EVP_DecodeBlock(unsignedBytes(bytes), unsignedBytes(text), static_cast<int>(text.size())) < 0) {
    return std::nullopt;
  }
  bytes.resize(bytes.size() - padding);
  // EVP_DecodeBlock ignores unused bits of the last character; only the canonical text is accepted.
  return padding == 0 || toBase64(bytes) == text ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<std::string> sha256(std::string_view bytes) {
  // Reused: creating one takes as long as the digest of a small file.
  thread_local const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                                     &EVP_MD_CTX_free);
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned size = 0;
  const bool isMade = sha256Method() && context && EVP_DigestInit_ex2(context.get(), sha256Method(), nullptr) == 1 &&
                      EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) == 1 &&
                      EVP_DigestFinal_ex(context.get(), digest.data(), &size) == 1;
  if (!isMade) return std::nullopt;
  return std::string(digest.begin(), digest.begin() + size);
}

std::optional<std::string> randomBytes(std::size_t count) {
  std::string bytes(count, '\0');
  const bool isMade = RAND_bytes(unsignedBytes(bytes), static_cast<int>(count)) == 1;
  return isMade ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string makeUuid() {
  std::string bytes = uuidBytes();
  bytes[6] = withBits(bytes[6], 0x0F, 0x40);  // version 4
  bytes[8] = withBits(bytes[8], 0x3F, 0x80);  // the variant of the RFC
  std::string text = toHex(bytes);
  std::transform(text.begin(), text.end(), text.begin(), [](char c) { return Ascii::upper(c); });
  for (const std::size_t at : {8U, 13U, 18U, 23U}) text.insert(at, 1, '-');
  return text;
}

bool isSameSecret(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size()) == 0;
}

}  // namespace mirvel
