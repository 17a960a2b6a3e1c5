#pragma once

#include <iconv.h>

#include <optional>
#include <string>
#include <string_view>

namespace mirvel::testdata {

/// Encodes UTF-8 by iconv(3), as a judge that is independent of ICU. Null if the encoding lacks a character.
inline std::optional<std::string> byIconv(std::string_view text, std::string_view encoding) {
  const iconv_t converter = ::iconv_open(std::string(encoding).c_str(), "UTF-8");
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string result(text.size() * 4 + 16, '\0');
  std::string source(text);
  char* from = source.data();
  std::size_t left = source.size();
  char* to = result.data();
  std::size_t room = result.size();
  const bool isGood =
      ::iconv(converter, &from, &left, &to, &room) == 0 && ::iconv(converter, nullptr, nullptr, &to, &room) == 0;
  ::iconv_close(converter);
  if (!isGood) return std::nullopt;
  result.resize(result.size() - room);
  return result;
}

}  // namespace mirvel::testdata
