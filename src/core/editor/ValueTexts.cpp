#include "core/editor/ValueTexts.h"

#include <array>
#include <charconv>
#include <utility>

#include "core/files/URL.h"
#include "core/locale/Dates.h"
#include "core/locale/LocaleTexts.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

ValueTexts::ValueTexts(const Localize& localize, std::string home)
    : m_localize(localize), m_home(std::move(home)), m_isRightToLeft(localize.isRightToLeft()) {}

std::string ValueTexts::path(const std::string& path) const {
  return path.starts_with('/') ? localizedDisplayPath(path, m_home) : path;
}

std::string ValueTexts::real(double number) const {
  std::array<char, 32> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), result.ptr};
}

std::string ValueTexts::data(const propertylist::Data& data) const {
  return byteCount(data.bytes.size(), m_localize.locale());
}

std::string ValueTexts::date(propertylist::Date date) const {
  constexpr double from1970To2001 = 978'307'200;
  return Date::standardText(date.seconds + from1970To2001, m_localize.timeLocale());
}

std::string ValueTexts::joined(const std::vector<std::string>& parts, std::string_view separator) const {
  return bidirectionalString(parts, separator, m_isRightToLeft);
}

std::string joinedLines(const std::vector<std::string>& lines) {
  return bidirectionalString(lines, "\n", false);
}

}  // namespace mirvel
