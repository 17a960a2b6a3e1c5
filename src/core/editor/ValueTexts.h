#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/locale/Localize.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// A read-only row of a section: a boolean is shown as a check box, a string literally, anything else by its
/// description.
struct KeyValueItem {
  std::string key;
  propertylist::Value value;

  bool operator==(const KeyValueItem&) const = default;
};

/// The values of a job file as localized texts.
class ValueTexts {
 public:
  /// Paths below `home` are shown with a tilde.
  explicit ValueTexts(const Localize& localize, std::string home = {});

  std::string boolean(bool isOn) const { return isOn ? m_localize.on() : m_localize.off(); }
  std::string number(std::int64_t number) const { return m_localize.int_(number); }
  /// With the fewest digits that mean this very number.
  std::string real(double number) const;
  std::string path(const std::string& path) const;
  /// Its size: nobody reads bytes.
  std::string data(const propertylist::Data& data) const;
  std::string date(propertylist::Date date) const;

  /// "key : value", key first in any language.
  std::string line(const std::string& key, const std::string& value) const { return joined({key, value}, " : "); }
  /// The first part read first in any language.
  std::string joined(const std::vector<std::string>& parts, std::string_view separator) const;

 private:
  const Localize& m_localize;
  const std::string m_home;
  const bool m_isRightToLeft;
};

/// One below the other.
std::string joinedLines(const std::vector<std::string>& lines);

}  // namespace mirvel
