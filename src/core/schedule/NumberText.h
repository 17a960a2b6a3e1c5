#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::Scheduled {

/// Parses numbers in the format of a locale, in its own digits or in Latin ones. The whole text must be the number.
/// Without ICU data, no text is a number.
class NumberText {
 public:
  explicit NumberText(const std::string& locale);
  ~NumberText();
  NumberText(const NumberText&) = delete;
  NumberText& operator=(const NumberText&) = delete;

  /// An integer in the range of a signed 64-bit integer. A fraction is dropped, and grouping separators are ignored
  /// anywhere in the text. In English, "1,234" → 1234, "1,2" → 12, "12.75" → 12; null for "", "12 apples" and "NaN".
  std::optional<std::int64_t> parseField(std::string_view text) const;
  /// An integer in digits, those of the locale or Latin ones, with an optional minus; grouping separators are accepted
  /// only where the locale has them. In English, "1,234" → 1234; null for "1,2", "1.0", "+1", " 1" and "".
  std::optional<std::int64_t> parseWhole(std::string_view text) const;
  /// `parseField` with the fraction and of any finite size.
  std::optional<double> parseExactly(std::string_view text) const;

 private:
  struct Format;
  std::unique_ptr<const Format> m_format;
};

}  // namespace mirvel::Scheduled
