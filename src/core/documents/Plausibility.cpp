#include "core/documents/Plausibility.h"

#include <unicode/uchar.h>
#include <unicode/ulocdata.h>
#include <unicode/uscript.h>
#include <unicode/uset.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mirvel {

namespace {

constexpr std::size_t planeSize = 0x10000;

/// The letters of a language, of the basic plane.
struct Alphabet {
  const char* language;
  std::bitset<planeSize> letters;
  std::u16string_view frequent = {};  ///< the letters that make up four fifths of a text; empty: not known
};

/// For scripts whose encodings map the letters of one alphabet to those of another, so that only their frequency
/// differs.
constexpr std::pair<std::string_view, std::u16string_view> frequentLetters[] = {
    {"ru", u"оеаинтсрвлкмдпуя"}, {"uk", u"оаниівтерслкумдп"}, {"be", u"анікрсоетвлпыудз"}, {"bg", u"аоиентрсвлкдпмзъ"},
    {"sr", u"аиоенсрјтувдкпмл"}, {"mk", u"аоиентрсвлкдпјму"}, {"el", u"αοιετσνηυρπκμλςί"}, {"he", u"יוהלאתמרשבנדם"},
    {"ar", u"اليمنوتربدعةفسق"},  {"fa", u"اینردهوتمبسشک"},
};

/// The languages for which one of the known encodings was made.
constexpr const char* writtenLanguages[] = {"fr", "de", "es", "pt", "it", "nl", "sv",      "da", "nb", "fi",
                                            "is", "ca", "pl", "cs", "sk", "hu", "ro",      "hr", "sl", "et",
                                            "lv", "lt", "tr", "el", "ru", "uk", "be",      "bg", "sr", "mk",
                                            "he", "ar", "fa", "th", "ja", "zh", "zh_Hant", "ko"};

void addExemplars(Alphabet& alphabet) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<ULocaleData, decltype(&ulocdata_close)> data(ulocdata_open(alphabet.language, &status),
                                                                     &ulocdata_close);
  const std::unique_ptr<USet, decltype(&uset_close)> set(
      ulocdata_getExemplarSet(data.get(), nullptr, USET_ADD_CASE_MAPPINGS, ULOCDATA_ES_STANDARD, &status), &uset_close);
  if (U_FAILURE(status)) return;
  const std::int32_t items = uset_getItemCount(set.get());
  for (std::int32_t item = 0; item < items; ++item) {
    UChar32 first = 0;
    UChar32 last = 0;
    UErrorCode ignored = U_ZERO_ERROR;
    if (uset_getItem(set.get(), item, &first, &last, nullptr, 0, &ignored) != 0) break;  // strings follow
    for (UChar32 c = first; c <= std::min<UChar32>(last, planeSize - 1); ++c)
      alphabet.letters.set(static_cast<std::size_t>(c));
  }
}

const std::vector<Alphabet>& alphabets() {
  static const auto all = [] {
    std::vector<Alphabet> result;
    for (const char* language : writtenLanguages) {
      result.push_back({language, {}});
      for (const auto& [name, letters] : frequentLetters) {
        if (name == language) result.back().frequent = letters;
      }
      addExemplars(result.back());
      // Romanian is also written with cedillas, the only form that older encodings have.
      if (std::string_view(language) == "ro") {
        for (const char16_t letter : u"\u015e\u015f\u0162\u0163") result.back().letters.set(letter);
      }
      if (std::string_view(language) == "fa" || std::string_view(language) == "ar") result.back().letters.set(0x0640);
    }
    return result;
  }();
  return all;
}

/// Null characters for unpaired surrogates.
UChar32 nextCharacter(std::u16string_view text, std::size_t& at) {
  const char16_t unit = text[at++];
  if (!U16_IS_SURROGATE(unit)) return unit;
  if (U16_IS_SURROGATE_TRAIL(unit) || at == text.size() || !U16_IS_TRAIL(text[at])) return 0;
  return static_cast<UChar32>(U16_GET_SUPPLEMENTARY(unit, text[at++]));
}

/// Characters that people write in texts of any language, besides letters.
bool isCommonSign(UChar32 c) {
  constexpr std::u16string_view signs =
      u"\u00a0\u00a1\u00a3\u00a7\u00a9\u00ab\u00ae\u00b0\u00b1\u00b7\u00bb\u00bf\u00d7\u2010\u2011\u2013\u2014\u2018"
      u"\u2019\u201a\u201c\u201d\u201e\u2022\u2026\u2039\u203a\u20ac\u2116\u2122\u3000\u3001\u3002\u3008\u3009\u300a"
      u"\u300b\u300c\u300d\u300e\u300f\u3010\u3011\u30fb\u30fc\uff01\uff08\uff09\uff0c\uff1a\uff1b\uff1f\u060c\u061b"
      u"\u061f\u05be\u0e3f";
  return c < static_cast<UChar32>(planeSize) && signs.find(static_cast<char16_t>(c)) != std::u16string_view::npos;
}

/// Whether two letters can't be in one word. Scripts of East Asia are mixed without spaces, also with Latin words.
bool isMixture(UChar32 a, UChar32 b) {
  const auto scriptOf = [](UChar32 c) {
    UErrorCode status = U_ZERO_ERROR;
    return uscript_getScript(c, &status);
  };
  const auto isWestern = [](UScriptCode script) {
    return script == USCRIPT_LATIN || script == USCRIPT_CYRILLIC || script == USCRIPT_GREEK ||
           script == USCRIPT_HEBREW || script == USCRIPT_ARABIC || script == USCRIPT_THAI;
  };
  const UScriptCode first = scriptOf(a);
  const UScriptCode second = scriptOf(b);
  return first != second && isWestern(first) && isWestern(second);
}

/// What is wrong with the character between its neighbours, whatever the language; 0 if nothing is.
double faultOf(UChar32 before, UChar32 c, UChar32 after) {
  constexpr double grave = -3;
  constexpr double wrong = -2;
  constexpr double shouted = -0.2;
  constexpr double alone = -0.4;
  const auto category = u_charType(c);
  if (category == U_CONTROL_CHAR || category == U_UNASSIGNED || category == U_PRIVATE_USE_CHAR) return grave;
  const bool isInWord = u_isalpha(before) && u_isalpha(after);
  if (!u_isalpha(c) && category != U_NON_SPACING_MARK) return isInWord && c != 0x2019 && c != 0x00b7 ? wrong : 0;
  double fault = 0;
  if (category == U_NON_SPACING_MARK && !u_isalpha(before) && u_charType(before) != U_NON_SPACING_MARK) fault += wrong;
  if (u_isupper(c) && u_isupper(before)) fault += shouted;
  const bool isSyllable = c >= 0x3000;  // or an ideograph, which can be a word
  const bool mayStandAlone = u_islower(c) || isSyllable || category == U_NON_SPACING_MARK;
  if (!mayStandAlone && !u_isalpha(before) && !u_isalpha(after)) fault += alone;
  if (u_isalpha(before) && isMixture(before, c)) fault += wrong;
  if (u_isalpha(after) && isMixture(c, after)) fault += wrong;
  if (u_islower(before) && u_isupper(c)) fault += wrong;
  if (u_isupper(c) && u_islower(after) && u_isupper(before)) fault += wrong;
  const auto isPlainLetter = [](UChar32 each) { return each < 0x80 && u_isalpha(each); };
  if (category == U_OTHER_LETTER && isPlainLetter(before) && isPlainLetter(after)) fault += wrong;
  return fault;
}

/// The characters above U+007F, and how often each occurs.
struct Census {
  std::map<UChar32, int> letters;
  int count = 0;
  double points = 0;  ///< of faults and signs
};

Census censusOf(std::u16string_view text) {
  constexpr double sign = 1;
  constexpr double oddSign = -0.5;
  std::vector<UChar32> characters;
  for (std::size_t i = 0; i < text.size();) {
    characters.push_back(nextCharacter(text, i));
  }
  Census census;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const UChar32 c = characters[i];
    if (c < 0x80) continue;
    ++census.count;
    const double fault =
        faultOf(i > 0 ? characters[i - 1] : ' ', c, i + 1 < characters.size() ? characters[i + 1] : ' ');
    census.points += fault;
    if (fault <= -1) continue;
    if (isCommonSign(c)) {
      census.points += sign;
    } else if (u_isalpha(c) || u_charType(c) == U_NON_SPACING_MARK) {
      ++census.letters[c];
    } else {
      census.points += oddSign;
    }
  }
  return census;
}

double pointsOf(const Census& census, const Alphabet& alphabet) {
  constexpr double foreign = -0.5;
  constexpr double expectedShare = 0.8;
  constexpr double weight = 0.4;
  double points = 0;
  for (const auto& [letter, count] : census.letters) {
    const bool isKnown =
        letter < static_cast<UChar32>(planeSize) && alphabet.letters.test(static_cast<std::size_t>(letter));
    const auto lower = static_cast<char16_t>(u_tolower(letter));
    const double share = alphabet.frequent.empty()                                    ? expectedShare
                         : alphabet.frequent.find(lower) != std::u16string_view::npos ? 1
                                                                                      : 0;
    points += count * (isKnown ? 1 + weight * (share - expectedShare) : foreign);
  }
  return points;
}

}  // namespace

Plausibility plausibilityOf(std::u16string_view text, std::string_view favourite) {
  const Census census = censusOf(text);
  if (census.count == 0) return {.score = 0};
  constexpr double preference = 0.02;
  Plausibility best{.score = -10};
  for (const Alphabet& alphabet : alphabets()) {
    double score = (census.points + pointsOf(census, alphabet)) / census.count;
    if (favourite == alphabet.language) score += preference;
    if (score > best.score) best = {score, alphabet.language};
  }
  return best;
}

double shareOfKnownCharacters(std::u16string_view text) {
  std::size_t knownCharacters = 0;
  std::size_t all = 0;
  for (std::size_t i = 0; i < text.size(); ++all) {
    const UChar32 c = nextCharacter(text, i);
    const bool isPlain = c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0x7f);
    const auto hasLetter = [c](const Alphabet& a) { return a.letters.test(static_cast<std::size_t>(c)); };
    const bool isKnown = isPlain || isCommonSign(c) ||
                         (c >= 0x80 && c < static_cast<UChar32>(planeSize) &&
                          std::any_of(alphabets().begin(), alphabets().end(), hasLetter));
    if (isKnown) ++knownCharacters;
  }
  return all == 0 ? 0 : static_cast<double>(knownCharacters) / static_cast<double>(all);
}

}  // namespace mirvel
