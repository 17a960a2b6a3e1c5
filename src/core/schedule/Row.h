#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "core/schedule/Scheduled.h"

/// What the rule editor shows, as plain values.
namespace mirvel::Scheduled {

/// The text in a field for a number.
struct NumberField {
  std::string text;

  bool operator==(const NumberField&) const = default;
};

/// The time in a time picker.
struct TimePicker {
  Time time;

  bool operator==(const TimePicker&) const = default;
};

/// One element of a row; a text is that of a pop-up or of a label.
using DisplayValue = std::variant<std::string, NumberField, TimePicker>;

/// One row of the editor, its elements from the left; the first is the text of the rule's kind.
using Row = std::vector<DisplayValue>;

/// What of the job file a row was made from, and what the row said then.
struct RowOrigin {
  FileSource source;
  Row row;

  bool operator==(const RowOrigin&) const = default;
};

/// The texts that the editor shows in its pop-ups, and by which its rows are read back: those of one list must be
/// distinct.
struct Texts {
  std::array<std::string, 6> kinds;  ///< in the order of `Kind`
  std::array<std::string, 4> units;  ///< in the order of `RepeatInterval::Unit`
  std::string weekdays;              ///< the group of days
  std::string weekends;
  std::array<std::string, 7> dayNames;     ///< Sunday first
  std::array<std::string, 12> monthNames;  ///< January first

  const std::string& of(Kind kind) const { return kinds[static_cast<std::size_t>(kind)]; }
  const std::string& of(RepeatInterval::Unit unit) const { return units[static_cast<std::size_t>(unit)]; }
};

}  // namespace mirvel::Scheduled
