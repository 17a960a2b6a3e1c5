#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::Scheduled {

/// Reads whole numbers as a person writes them in a locale, in its own digits or in Latin ones. What follows a decimal
/// separator is dropped.
class NumberText {
 public:
  explicit NumberText(const std::string& locale);
  ~NumberText();
  NumberText(const NumberText&) = delete;
  NumberText& operator=(const NumberText&) = delete;

  /// The number that the whole text is, if 64 bits with a sign hold it.
  std::optional<std::int64_t> parse(std::string_view text) const;
  /// Likewise, whatever grouping separators stand anywhere in the text.
  std::optional<std::int64_t> parseField(std::string_view text) const;
  /// Likewise, with its fraction, and of any size.
  std::optional<double> parseExactly(std::string_view text) const;

 private:
  struct Format;
  std::unique_ptr<const Format> m_format;
};

}  // namespace mirvel::Scheduled
