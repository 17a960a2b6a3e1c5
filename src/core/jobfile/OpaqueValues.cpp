#include "core/jobfile/OpaqueValues.h"

#include <optional>
#include <string_view>

#include "core/text/Digits.h"

namespace mirvel::jobfile {

namespace {

using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;
using Path = OpaqueValue::Path;

/// Walks both values in parallel, and keeps the path to the current position.
class Search {
 public:
  std::vector<OpaqueValue> found() && { return std::move(m_found); }

  void compare(const Value& file, const Value& read) {
    const auto* dictionary = file.as<Dictionary>();
    const auto* array = file.as<Array>();
    if (dictionary && read.as<Dictionary>()) {
      compareEntries(*dictionary, *read.as<Dictionary>());
    } else if (array && read.as<Array>() && array->size() == read.as<Array>()->size()) {
      compareElements(*array, *read.as<Array>());
    }
  }

 private:
  void compareEntries(const Dictionary& file, const Dictionary& read) {
    for (const auto& [key, value] : file) {
      m_path.push_back(key);
      if (const Value* const held = read.find(key)) {
        compare(value, *held);
      } else {
        m_found.push_back({m_path, value});
      }
      m_path.pop_back();
    }
  }

  void compareElements(const Array& file, const Array& read) {
    for (std::size_t i = 0; i < file.size(); ++i) {
      m_path.push_back('[' + std::to_string(i) + ']');
      if (read[i].as<Dictionary>() && !file[i].as<Dictionary>()) {
        m_found.push_back({m_path, file[i]});
      } else {
        compare(file[i], read[i]);
      }
      m_path.pop_back();
    }
  }

  Path m_path;
  std::vector<OpaqueValue> m_found;
};

/// The index in a step such as "[3]"; none for the key of a dictionary.
std::optional<std::size_t> indexOf(std::string_view step) {
  if (!step.starts_with('[') || !step.ends_with(']')) return std::nullopt;
  const auto index = Decimal::toInt(step.substr(1, step.size() - 2));
  return index ? std::optional(static_cast<std::size_t>(*index)) : std::nullopt;
}

template <typename AnyValue>
AnyValue* element(AnyValue& value, const std::string& step) {
  if (auto* dictionary = value.template as<Dictionary>()) return dictionary->find(step);
  auto* array = value.template as<Array>();
  const auto index = indexOf(step);
  return array && index && *index < array->size() ? &(*array)[*index] : nullptr;
}

/// Null if there is no such value.
template <typename AnyValue>
AnyValue* valueAt(AnyValue& top, std::span<const std::string> path) {
  AnyValue* value = &top;
  for (const std::string& step : path) {
    value = element(*value, step);
    if (!value) return nullptr;
  }
  return value;
}

}  // namespace

std::string OpaqueValue::text() const {
  std::string text;
  for (const std::string& step : path) {
    if (!text.empty() && !step.starts_with('[')) text += '.';
    text += step;
  }
  return text;
}

std::vector<OpaqueValue> opaqueValues(const Value& file, const Value& read) {
  Search search;
  search.compare(file, read);
  return std::move(search).found();
}

bool holdsAt(const Value& file, std::span<const std::string> path) {
  return valueAt(file, path) != nullptr;
}

void removeAt(Value& file, std::span<const std::string> path) {
  if (path.empty()) return;
  Value* const parent = valueAt(file, path.first(path.size() - 1));
  if (!parent) return;
  if (auto* const dictionary = parent->as<Dictionary>()) {
    (void)dictionary->remove(path.back());  // already absent is fine
  } else if (Value* const value = element(*parent, path.back())) {
    *value = Dictionary();
  }
}

}  // namespace mirvel::jobfile
