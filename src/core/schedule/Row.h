#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "core/schedule/Scheduled.h"

/// The contents of the rule editor as plain values.
namespace mirvel::Scheduled {

/// A field with a number, as typed.
struct NumberField {
  std::string text;

  bool operator==(const NumberField&) const = default;
};

/// A picker for a time of day.
struct TimePicker {
  Time time;

  bool operator==(const TimePicker&) const = default;
};

/// One element of a row; a string is the title of a pop-up menu or a label.
using DisplayValue = std::variant<std::string, NumberField, TimePicker>;

/// One row of the editor, its elements from left to right. The first one is the title of the rule's kind.
using Row = std::vector<DisplayValue>;

/// The values of the job file that a row was made from, and the elements that it had then.
struct RowOrigin {
  FileSource source;
  Row row;

  bool operator==(const RowOrigin&) const = default;
};

/// The titles in the pop-up menus of the editor, by which its rows are also read back. Titles within one list must be
/// distinct.
struct Texts {
  std::array<std::string, 6> kinds;  ///< in the order of `Kind`
  std::array<std::string, 4> units;  ///< in the order of `RepeatInterval::Unit`
  std::string weekdays;              ///< the group of days
  std::string weekends;
  std::array<std::string, 7> dayNames;     ///< Sunday first
  std::array<std::string, 12> monthNames;  ///< January first

  /// The title of a kind or of a unit.
  const std::string& of(Kind kind) const { return kinds[static_cast<std::size_t>(kind)]; }
  const std::string& of(RepeatInterval::Unit unit) const { return units[static_cast<std::size_t>(unit)]; }
};

}  // namespace mirvel::Scheduled
