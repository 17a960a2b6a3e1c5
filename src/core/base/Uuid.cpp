#include "core/base/Uuid.h"

#include <openssl/rand.h>

#include <array>
#include <random>

namespace mirvel {

namespace {

using Bytes = std::array<unsigned char, 16>;

Bytes randomBytes() {
  Bytes bytes{};
  if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1) return bytes;
  std::random_device device;  // a name must be made even where the crypto library refuses to work
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(device());
  return bytes;
}

}  // namespace

std::string makeUuid() {
  Bytes bytes = randomBytes();
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);  // version 4
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);  // the variant of the RFC
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += digits[bytes[i] >> 4U];
    text += digits[bytes[i] & 0x0FU];
  }
  return text;
}

}  // namespace mirvel
