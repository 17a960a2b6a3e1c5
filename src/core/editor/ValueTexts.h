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
  bool isSecret = false;  ///< concealed until the user asks for it

  bool operator==(const KeyValueItem&) const = default;
};

/// Converts values of a job file to localized texts. `localize` must outlive it.
class ValueTexts {
 public:
  /// Paths below `home` are abbreviated with a tilde; an empty `home` abbreviates none.
  explicit ValueTexts(const Localize& localize, std::string home = {});

  std::string boolean(bool isOn) const { return isOn ? m_localize.on() : m_localize.off(); }
  std::string number(std::int64_t number) const { return m_localize.int_(number); }
  /// The shortest text that represents exactly this number.
  std::string real(double number) const;
  /// A localized display path; a relative path is returned unchanged.
  std::string path(const std::string& path) const;
  /// The size, not the bytes: "5 bytes".
  std::string data(const propertylist::Data& data) const;
  std::string date(propertylist::Date date) const;

  /// "key : value". The key is read first even in right-to-left languages.
  std::string line(const std::string& key, const std::string& value) const { return joined({key, value}, " : "); }
  /// Joins the parts so that they are read in this order even in right-to-left languages.
  std::string joined(const std::vector<std::string>& parts, std::string_view separator) const;

 private:
  const Localize& m_localize;
  const std::string m_home;
  const bool m_isRightToLeft;
};

/// The lines of a text; see `ValueTexts::joined`.
std::string joinedLines(const std::vector<std::string>& lines);

/// A readable text for any value. Dictionaries and arrays have a line for each element, with nested ones indented; data
/// is shown by its size. A very long text is cut off with an ellipsis, in time that depends on the length of the result
/// only.
///
///     {"a": [1, "b"]} → "a :\n  – 1\n  – b"
std::string description(const propertylist::Value& value, const Localize& localize);

}  // namespace mirvel
