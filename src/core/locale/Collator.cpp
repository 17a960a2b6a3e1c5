#include "core/locale/Collator.h"

#include <unicode/coll.h>
#include <unicode/unistr.h>
#include <unicode/usetiter.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <optional>

#include "core/text/Ascii.h"

namespace mirvel {

namespace {

int compareBytes(std::string_view a, std::string_view b) {
  return std::clamp(a.compare(b), -1, 1);
}

std::string keyOf(const icu::Collator& collator, const char16_t* text, std::int32_t length) {
  // Large enough for most keys, which are then computed only once.
  std::array<std::uint8_t, 256> bytes;
  const std::int32_t size = collator.getSortKey(text, length, bytes.data(), static_cast<std::int32_t>(bytes.size()));
  std::string key(static_cast<std::size_t>(size), '\0');
  if (key.size() <= bytes.size()) {
    std::copy_n(bytes.begin(), key.size(), key.begin());
  } else {
    collator.getSortKey(text, length, reinterpret_cast<std::uint8_t*>(key.data()), size);
  }
  return key;
}

/// The ranks of the characters of ASCII at the primary level of a collation, where upper and lower case are the same.
/// 0 for a character that isn't printable.
using AsciiRanks = std::array<std::uint8_t, 128>;

constexpr char firstPrintable = ' ';
constexpr char lastPrintable = '~';
constexpr char levelEnd = 1;  // below all ranks, so that a text sorts before its continuations

/// Whether the collation compares texts in ASCII character by character, and lower case before upper case.
bool isPlainForAscii(const icu::Collator& collator) {
  UErrorCode status = U_ZERO_ERROR;
  const bool isUsual = collator.getAttribute(UCOL_STRENGTH, status) == UCOL_TERTIARY &&
                       collator.getAttribute(UCOL_CASE_FIRST, status) == UCOL_OFF &&
                       collator.getAttribute(UCOL_CASE_LEVEL, status) == UCOL_OFF &&
                       collator.getAttribute(UCOL_ALTERNATE_HANDLING, status) == UCOL_NON_IGNORABLE;
  const std::unique_ptr<icu::UnicodeSet> tailored(collator.getTailoredSet(status));
  if (!isUsual || U_FAILURE(status) || !tailored) return false;
  icu::UnicodeSet ascii(0, 127);
  // Of the strings that are tailored as a whole, too, those count that begin with ASCII.
  icu::UnicodeSetIterator each(*tailored);
  while (each.next()) {
    if (ascii.contains(each.getString().char32At(0))) return false;
  }
  return true;
}

/// Null if the collation has rules of its own for ASCII.
std::optional<AsciiRanks> asciiRanks(const icu::Collator& collator) {
  if (!isPlainForAscii(collator)) return std::nullopt;
  const std::unique_ptr<icu::Collator> primary(collator.clone());
  UErrorCode status = U_ZERO_ERROR;
  if (primary) primary->setAttribute(UCOL_STRENGTH, UCOL_PRIMARY, status);
  if (!primary || U_FAILURE(status)) return std::nullopt;
  std::map<std::string, std::string> byKey;
  for (char c = firstPrintable; c <= lastPrintable; ++c) {
    const auto letter = static_cast<char16_t>(c);
    byKey[keyOf(*primary, &letter, 1)] += c;
  }
  AsciiRanks ranks{};
  std::uint8_t rank = levelEnd + 1;
  for (const auto& [key, characters] : byKey) {
    for (const char c : characters) ranks.at(static_cast<unsigned char>(c)) = rank;
    ++rank;
  }
  return ranks;
}

/// Appends what makes a number sort by its value, and returns the size of its text; 0 if it is too long.
std::size_t appendNumber(std::string& keys, std::string_view text) {
  constexpr std::size_t mostDigits = 250;
  const auto isDigit = [](char c) { return Ascii::isDigit(c); };
  const auto size = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
  std::string_view digits = text.substr(0, size);
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), size - 1));
  if (digits.size() > mostDigits) return 0;
  keys += static_cast<char>(digits.size());
  keys += digits;
  return size;
}

/// The third level of the key: the case of each letter.
void appendCases(std::string& keys, std::string_view text) {
  keys += levelEnd;
  for (const char c : text) {
    if (Ascii::isLetter(c)) keys += Ascii::lower(c) == c ? 'l' : 'u';
  }
}

bool appendAsciiKeyTo(std::string& keys, std::string_view text, const AsciiRanks& ranks) {
  bool hasUpperCase = false;
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    const std::uint8_t rank = Ascii::holds(c) ? ranks.at(static_cast<unsigned char>(c)) : std::uint8_t{0};
    if (rank == 0) return false;
    const bool isNumber = Ascii::isDigit(c);
    keys += static_cast<char>(isNumber ? ranks['0'] : rank);
    const std::size_t size = isNumber ? appendNumber(keys, text.substr(i)) : 1;
    if (size == 0) return false;
    hasUpperCase = hasUpperCase || Ascii::lower(c) != c;
    i += size;
  }
  if (hasUpperCase) appendCases(keys, text);
  return true;
}

}  // namespace

struct Collator::Implementation {
  std::unique_ptr<icu::Collator> collator;  // null if ICU has no data; bytes are compared then
  std::optional<AsciiRanks> asciiRanks;
};

Collator::Collator(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
  if (collator) collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
  if (U_FAILURE(status)) collator.reset();
  auto ranks = collator ? asciiRanks(*collator) : std::nullopt;
  m_implementation = std::make_unique<const Implementation>(Implementation{std::move(collator), ranks});
}

Collator::~Collator() = default;

int Collator::localizedStandardCompare(std::string_view a, std::string_view b) const {
  if (!m_implementation->collator) return compareBytes(a, b);
  UErrorCode status = U_ZERO_ERROR;
  const UCollationResult result = m_implementation->collator->compareUTF8(a, b, status);
  return U_FAILURE(status) ? compareBytes(a, b) : static_cast<int>(result);
}

std::string Collator::sortKey(std::string_view text) const {
  if (!m_implementation->collator) return std::string(text);
  // Fast path for nearly all texts: no allocation except for the key.
  std::array<char16_t, 256> letters;
  if (text.size() <= letters.size() && Ascii::holds(text)) {
    std::copy(text.begin(), text.end(), letters.begin());
    return keyOf(*m_implementation->collator, letters.data(), static_cast<std::int32_t>(text.size()));
  }
  const auto wide = icu::UnicodeString::fromUTF8(text);
  return keyOf(*m_implementation->collator, wide.getBuffer(), wide.length());
}

bool Collator::appendAsciiKey(std::string& keys, std::string_view text) const {
  if (!m_implementation->asciiRanks) return false;
  const std::size_t size = keys.size();
  if (appendAsciiKeyTo(keys, text, *m_implementation->asciiRanks)) return true;
  keys.resize(size);
  return false;
}

}  // namespace mirvel
