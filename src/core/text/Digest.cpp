#include "core/text/Digest.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "core/text/Ascii.h"

namespace mirvel {

namespace {

bool isBase64(char c) {
  return Ascii::isLetter(c) || Ascii::isDigit(c) || c == '+' || c == '/';
}

const unsigned char* unsignedBytes(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

/// The bits behind the last byte must be zero, or two texts would stand for the same bytes.
bool hasCleanEnd(char last, std::size_t padding) {
  const std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::size_t unused = padding == 2 ? 15 : 3;
  return padding == 0 || (alphabet.find(last) & unused) == 0;
}

/// Looked up once: `EVP_sha256()` has the library look each time, which takes longer than a small file's digest.
const EVP_MD* sha256() {
  static const EVP_MD* const method = EVP_MD_fetch(nullptr, "SHA256", nullptr);
  return method;
}

}  // namespace

std::optional<std::string> String::fromBase64(std::string_view text) {
  if (text.empty()) return std::string();
  if (text.size() % 4 != 0 || text.size() > std::numeric_limits<int>::max()) return std::nullopt;
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  const std::string_view digits = text.substr(0, text.size() - padding);
  if (!std::all_of(digits.begin(), digits.end(), isBase64)) return std::nullopt;
  if (!hasCleanEnd(digits.back(), padding)) return std::nullopt;

  std::string bytes(text.size() / 4 * 3, '\0');
  auto* out = reinterpret_cast<unsigned char*>(bytes.data());
  if (EVP_DecodeBlock(out, unsignedBytes(text), static_cast<int>(text.size())) < 0) return std::nullopt;
  bytes.resize(bytes.size() - padding);
  return bytes;
}

std::string String::toBase64(std::string_view bytes) {
  std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');  // EVP_EncodeBlock ends it with a zero
  auto* out = reinterpret_cast<unsigned char*>(text.data());
  text.resize(static_cast<std::size_t>(EVP_EncodeBlock(out, unsignedBytes(bytes), static_cast<int>(bytes.size()))));
  return text;
}

std::optional<std::string> Data::sha256Digest(std::string_view bytes) {
  // Kept: to make one takes as long as the digest of a small file.
  thread_local const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                                     &EVP_MD_CTX_free);
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned size = 0;
  const bool isMade = sha256() && context && EVP_DigestInit_ex2(context.get(), sha256(), nullptr) == 1 &&
                      EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) == 1 &&
                      EVP_DigestFinal_ex(context.get(), digest.data(), &size) == 1;
  if (!isMade) return std::nullopt;
  return std::string(digest.begin(), digest.begin() + size);
}

std::string Data::hexString(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text += digits[value >> 4U];
    text += digits[value & 15U];
  }
  return text;
}

}  // namespace mirvel
