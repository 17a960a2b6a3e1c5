#pragma once

#include <string_view>
#include <vector>

namespace mirvel::testdata {

/// Comments as they occur in scripts, in one language, and the encodings in which people store that language.
struct LanguageSample {
  const char* language;
  std::vector<std::string_view> encodings;  ///< as iconv(3) calls them
  std::vector<std::string_view> sentences;  ///< UTF-8, each with characters that ASCII lacks
};

const std::vector<LanguageSample>& languageSamples();

}  // namespace mirvel::testdata
