#include "core/jobfile/MergeIntoFile.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace mirvel::jobfile {

namespace {

using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;
using Interval = StartCalendarInterval::Interval;
using Values = std::span<const Value>;

Value merge(const Value& file, const Value& read, const Value& edited);

/// The elements of an array, or the value itself as the only element.
Values elementsOf(const Value& value) {
  const auto* array = value.as<Array>();
  return array ? Values(*array) : Values(&value, 1);
}

struct Ends {
  std::size_t before;
  std::size_t after;
};

/// The lengths of the common prefix and suffix, which don't overlap.
Ends commonEnds(Values a, Values b) {
  const std::size_t most = std::min(a.size(), b.size());
  Ends ends{0, 0};
  while (ends.before < most && a[ends.before] == b[ends.before]) ++ends.before;
  while (ends.before + ends.after < most && a[a.size() - 1 - ends.after] == b[b.size() - 1 - ends.after]) {
    ++ends.after;
  }
  return ends;
}

/// `file` and `read` have the same number of elements, in the same order.
Array mergeElements(Values file, Values read, Values edited) {
  const auto [before, after] = commonEnds(read, edited);
  const bool isSameCount = read.size() == edited.size();
  Array result(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(before));
  for (std::size_t i = before; i + after < edited.size(); ++i) {
    result.push_back(isSameCount ? merge(file[i], read[i], edited[i]) : edited[i]);
  }
  result.insert(result.end(), file.end() - static_cast<std::ptrdiff_t>(after), file.end());
  return result;
}

Value mergeLists(const Value& file, const Value& read, const Value& edited) {
  if (elementsOf(file).size() != elementsOf(read).size()) return edited;
  Array elements = mergeElements(elementsOf(file), elementsOf(read), elementsOf(edited));
  return edited.as<Array>() ? Value(std::move(elements)) : std::move(elements.front());
}

Value merge(const Value& file, const Value& read, const Value& edited) {
  if (edited == read) return file;
  const auto* fileEntries = file.as<Dictionary>();
  const auto* readEntries = read.as<Dictionary>();
  const auto* editedEntries = edited.as<Dictionary>();
  if (fileEntries && readEntries && editedEntries) return mergeIntoFile(*fileEntries, *readEntries, *editedEntries);
  return read.as<Array>() || edited.as<Array>() ? mergeLists(file, read, edited) : edited;
}

/// The interval of each of the `count` elements of the file; null if it has none.
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

class IntervalMerge {
 public:
  IntervalMerge(std::span<const Value> file, const StartCalendarInterval& read)
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
  /// Adds the elements before `end` that weren't read.
  void addUnread(std::size_t end) {
    for (; m_next < end; ++m_next) {
      // All dictionaries are read, so this one is the placeholder that `removeAt` leaves for a removed element.
      const bool isRemoved = m_file[m_next].as<Dictionary>() != nullptr;
      if (!isRemoved && !m_read[m_next]) m_result.push_back(m_file[m_next]);
    }
  }

  const std::span<const Value> m_file;
  const std::vector<const Interval*> m_read;
  Array m_result;
  std::size_t m_next = 0;  ///< the first element that hasn't been examined
};

}  // namespace

Dictionary mergeIntoFile(const Dictionary& file, const Dictionary& read, const Dictionary& edited) {
  std::vector<Dictionary::Entry> result;
  for (const auto& [key, value] : file) {
    const Value* const before = read.find(key);
    const Value* const now = edited.find(key);
    if (before && now) {
      result.emplace_back(key, merge(value, *before, *now));
    } else if (now) {
      result.emplace_back(key, *now);
    } else if (!before) {
      result.emplace_back(key, value);  // the record doesn't represent it
    }
  }
  for (const auto& [key, now] : edited) {
    // Entries that the record adds to every encoding aren't edits.
    const Value* const before = read.find(key);
    if (!file.find(key) && !(before && *before == now)) result.emplace_back(key, now);
  }
  return Dictionary::fromDistinct(std::move(result));
}

Value mergeIntervals(const Value& file, const StartCalendarInterval& read, const StartCalendarInterval& edited) {
  IntervalMerge intervals(elementsOf(file), read);
  for (const Interval& interval : edited.intervals) intervals.add(interval);
  Array elements = std::move(intervals).result();
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
