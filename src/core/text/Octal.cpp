#include "core/text/Octal.h"

#include <charconv>
#include <cstddef>
#include <tuple>

#include "core/text/Digits.h"

namespace mirvel::Octal {

namespace {

constexpr std::size_t classes = std::tuple_size_v<Mask>;
constexpr std::int64_t allBits = 0777;

std::string permissions(std::int64_t mode) {
  std::string result;
  for (const Attribute& each : mask(mode)) {
    result += each.read ? 'r' : '-';
    result += each.write ? 'w' : '-';
    result += each.execute ? 'x' : '-';
  }
  return result;
}

}  // namespace

std::optional<std::int64_t> toInt(std::string_view text) {
  return parseDigits(text, 8);
}

std::string fromInt(std::int64_t mask) {
  std::array<char, 32> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), mask, 8);
  return {buffer.data(), result.ptr};
}

std::string preparedString(std::string_view digits) {
  std::string result(digits);
  if (result.size() < classes) result.insert(0, classes - result.size(), '0');
  return result.substr(result.size() - classes);
}

std::string displayString(std::int64_t mask) {
  std::string digits = fromInt(mask);
  return mask >= 0 && digits.size() < classes ? preparedString(digits) : digits;
}

Attribute attribute(char digit) {
  const int bits = digit >= '0' && digit <= '7' ? digit - '0' : 0;
  return {.read = (bits & 4) != 0, .write = (bits & 2) != 0, .execute = (bits & 1) != 0};
}

char maskCharacter(Attribute attribute) {
  return static_cast<char>('0' + (attribute.read ? 4 : 0) + (attribute.write ? 2 : 0) + (attribute.execute ? 1 : 0));
}

Mask mask(std::int64_t number) {
  const std::string digits = preparedString(fromInt(number & allBits));
  return {attribute(digits[0]), attribute(digits[1]), attribute(digits[2])};
}

std::int64_t withMask(std::int64_t number, const Mask& mask) {
  std::string digits;
  for (const Attribute& each : mask) digits += maskCharacter(each);
  return (number & ~allBits) | toInt(digits).value_or(0);
}

std::string newFile(std::int64_t mask) {
  return permissions(0666 & ~mask);
}

std::string newFolder(std::int64_t mask) {
  return permissions(0777 & ~mask);
}

}  // namespace mirvel::Octal
