#include "core/propertylist/DataText.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/text/Bytes.h"

namespace mirvel::propertylist {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Entries of the table beyond the 64 digits.
enum : std::uint8_t { Junk = 0xFF, Blank = 0xFE, Padding = 0xFD };

constexpr std::array<std::uint8_t, 256> makeTable() {
  std::array<std::uint8_t, 256> table{};
  for (auto& entry : table) entry = Junk;
  for (std::size_t i = 0; i < alphabet.size(); ++i) {
    table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
  }
  for (const char c : {' ', '\t', '\r', '\n', '\v', '\f'}) table[static_cast<unsigned char>(c)] = Blank;
  table['='] = Padding;
  return table;
}
constexpr auto table = makeTable();

}  // namespace

ParsedData parseData(std::string_view text) {
  ParsedData result;
  result.bytes.reserve(text.size() * 3 / 4);
  std::uint32_t group = 0;
  unsigned count = 0;
  unsigned paddingRun = 0;  // the number of padding characters just read
  for (const char c : text) {
    const std::uint8_t code = table[static_cast<unsigned char>(c)];
    if (code == Blank) continue;
    paddingRun = code == Padding ? paddingRun + 1 : 0;
    if (code == Junk) {
      result.hasJunk = true;
      continue;
    }
    group = group << 6U | (code == Padding ? 0U : code);
    if (++count < 4) continue;
    result.bytes += static_cast<char>(group >> 16U & 0xFFU);
    if (paddingRun < 2) result.bytes += static_cast<char>(group >> 8U & 0xFFU);
    if (paddingRun < 1) result.bytes += static_cast<char>(group & 0xFFU);
    count = 0;
    group = 0;
  }
  result.isIncomplete = count != 0;
  return result;
}

void appendDataLines(std::string& out, std::string_view bytes, std::size_t indent) {
  // The macOS writer caps the indentation of data, and only of data, so that lines never become too short.
  indent = std::min<std::size_t>(indent, 8);
  const std::size_t columns = 76 - 8 * indent;
  const std::size_t bytesPerLine = columns / 4 * 3;
  for (std::size_t at = 0; at < bytes.size(); at += bytesPerLine) {
    out.append(indent, '\t');
    appendBase64(out, bytes.substr(at, bytesPerLine));
    out += '\n';
  }
}

}  // namespace mirvel::propertylist
