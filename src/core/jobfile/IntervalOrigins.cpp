#include "core/jobfile/IntervalOrigins.h"

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "core/jobfile/MergeIntoFile.h"

namespace mirvel::jobfile {

namespace {

using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;
using Interval = StartCalendarInterval::Interval;

/// The elements of the file; a dictionary alone is one of them.
std::span<const Value> elementsOf(const Value& file) {
  const auto* array = file.as<Array>();
  return array ? std::span(*array) : std::span(&file, 1);
}

/// The interval of each element of the file; null: none was made of it.
std::vector<const Interval*> byOrigin(const StartCalendarInterval& calendar, std::size_t count) {
  std::vector<const Interval*> result(count);
  for (const Interval& interval : calendar.intervals) {
    if (interval.origin && *interval.origin < count) result[*interval.origin] = &interval;
  }
  return result;
}

Dictionary encoded(const Interval& interval) {
  const auto value = encode(interval);
  return *value->as<Dictionary>();
}

class Merge {
 public:
  Merge(std::span<const Value> file, const StartCalendarInterval& read)
      : m_file(file), m_read(byOrigin(read, file.size())) {}

  void add(const Interval& interval) {
    const std::size_t origin = interval.origin.value_or(m_file.size());
    const auto* element = origin < m_file.size() ? m_file[origin].as<Dictionary>() : nullptr;
    if (!element || !m_read[origin]) return m_result.push_back(encoded(interval));
    addUnread(origin);
    m_result.emplace_back(mergeIntoFile(*element, encoded(*m_read[origin]), encoded(interval)));
  }
  Array result() && {
    addUnread(m_file.size());
    return std::move(m_result);
  }

 private:
  /// Up to that element.
  void addUnread(std::size_t end) {
    for (; m_next < end; ++m_next) {
      // Every dictionary is read, so one here is what `removeAt` leaves of another element.
      const bool isRemoved = m_file[m_next].as<Dictionary>() != nullptr;
      if (!isRemoved && !m_read[m_next]) m_result.push_back(m_file[m_next]);
    }
  }

  const std::span<const Value> m_file;
  const std::vector<const Interval*> m_read;
  Array m_result;
  std::size_t m_next = 0;  ///< the first element that hasn't been looked at
};

}  // namespace

Value mergeIntervals(const Value& file, const StartCalendarInterval& read, const StartCalendarInterval& edited) {
  Merge merge(elementsOf(file), read);
  for (const Interval& interval : edited.intervals) merge.add(interval);
  Array elements = std::move(merge).result();
  return edited.singleValue && elements.size() == 1 ? std::move(elements.front()) : Value(std::move(elements));
}

Value arrangedLike(const Value& file, const StartCalendarInterval& calendar, Absent absent) {
  const auto elements = elementsOf(file);
  const auto intervals = byOrigin(calendar, elements.size());
  Array result;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (intervals[i]) {
      result.emplace_back(encoded(*intervals[i]));
    } else {
      result.push_back(absent == Absent::IsEmpty ? Value(Dictionary()) : elements[i]);
    }
  }
  return file.as<Array>() ? Value(std::move(result)) : std::move(result.front());
}

}  // namespace mirvel::jobfile
