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
using Values = std::span<const Value>;

Value merge(const Value& file, const Value& read, const Value& edited);

/// The elements of a list; a value that is none stands for a list of itself.
Values elementsOf(const Value& value) {
  const auto* array = value.as<Array>();
  return array ? Values(*array) : Values(&value, 1);
}

struct Ends {
  std::size_t before;
  std::size_t behind;
};

/// How many elements two lists share at their ends.
Ends commonEnds(Values a, Values b) {
  const std::size_t most = std::min(a.size(), b.size());
  Ends ends{0, 0};
  while (ends.before < most && a[ends.before] == b[ends.before]) ++ends.before;
  while (ends.before + ends.behind < most && a[a.size() - 1 - ends.behind] == b[b.size() - 1 - ends.behind]) {
    ++ends.behind;
  }
  return ends;
}

/// The elements of the file stand in the order of those in `read`, one for one.
Array mergeElements(Values file, Values read, Values edited) {
  const auto [before, behind] = commonEnds(read, edited);
  const bool isSameCount = read.size() == edited.size();
  Array result(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(before));
  for (std::size_t i = before; i + behind < edited.size(); ++i) {
    result.push_back(isSameCount ? merge(file[i], read[i], edited[i]) : edited[i]);
  }
  result.insert(result.end(), file.end() - static_cast<std::ptrdiff_t>(behind), file.end());
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
      result.emplace_back(key, value);  // the record has never known of it
    }
  }
  for (const auto& [key, now] : edited) {
    const Value* const before = read.find(key);
    if (!file.find(key) && !(before && *before == now)) result.emplace_back(key, now);
  }
  return Dictionary::fromDistinct(std::move(result));
}

}  // namespace mirvel::jobfile
