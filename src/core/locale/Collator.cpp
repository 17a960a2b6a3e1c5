#include "core/locale/Collator.h"

#include <unicode/coll.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/text/Ascii.h"

namespace mirvel {

namespace {

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

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

}  // namespace

struct Collator::Implementation {
  std::unique_ptr<icu::Collator> collator;  // null if ICU has no data; bytes are compared then
};

Collator::Collator(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
  if (collator) collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
  if (U_FAILURE(status)) collator.reset();
  m_implementation = std::make_unique<const Implementation>(Implementation{std::move(collator)});
}

Collator::~Collator() = default;

int Collator::localizedStandardCompare(std::string_view a, std::string_view b) const {
  if (!m_implementation->collator) return compareBytes(a, b);
  UErrorCode status = U_ZERO_ERROR;
  const UCollationResult result = m_implementation->collator->compareUTF8(piece(a), piece(b), status);
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
  const auto wide = icu::UnicodeString::fromUTF8(piece(text));
  return keyOf(*m_implementation->collator, wide.getBuffer(), wide.length());
}

}  // namespace mirvel
