#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "core/text/Ascii.h"
#include "core/text/Strings.h"

namespace mirvel::String {

namespace {

icu::UnicodeString fromUtf8(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

/// An accent or vowel point. Marks of the classes below 10 (nukta, voicing, virama, overlays) make another letter.
bool isAccent(UChar32 c) {
  return u_charType(c) == U_NON_SPACING_MARK && u_getCombiningClass(c) >= 10;
}

icu::UnicodeString withoutAccents(const icu::UnicodeString& text) {
  icu::UnicodeString result;
  for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
    const UChar32 c = text.char32At(at);
    if (!isAccent(c)) result.append(c);
  }
  return result;
}

std::string withFirst(std::string_view text, UChar32 (*change)(UChar32)) {
  if (text.empty()) return {};
  const icu::UnicodeString whole = fromUtf8(text);
  icu::UnicodeString changed(change(whole.char32At(0)));
  changed.append(whole, whole.moveIndex32(0, 1), whole.length());
  std::string result;
  return changed.toUTF8String(result);
}

}  // namespace

std::string firstUppercased(std::string_view text) {
  // Title case, since a digraph such as U+01C6 has a form of its own for the first letter of a word.
  return withFirst(text, u_totitle);
}

std::string firstLowercased(std::string_view text) {
  return withFirst(text, u_tolower);
}

std::string fold(std::string_view text) {
  if (Ascii::holds(text)) return Ascii::lower(text);
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* decomposing = icu::Normalizer2::getNFDInstance(status);
  const icu::Normalizer2* composing = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return Ascii::lower(text);
  icu::UnicodeString plain = withoutAccents(decomposing->normalize(fromUtf8(text), status));
  plain = withoutAccents(decomposing->normalize(plain.foldCase(), status));
  std::string result;
  return composing->normalize(plain, status).toUTF8String(result);
}

}  // namespace mirvel::String
