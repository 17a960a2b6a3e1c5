#include <map>
#include <optional>

#include "core/editor/NestedRows.h"

namespace mirvel::NestedRows {

namespace {

using jobfile::LaunchEvents;
using jobfile::PlistType;
using jobfile::StringMap;

/// The values of the events of one stream, each below the path that leads to it.
class Leaves {
 public:
  explicit Leaves(const ValueTexts& texts) : m_texts(texts) {}

  void addEvent(const std::string& event, const PlistType& descriptor) {
    const Path path = {event};
    addEach(path, descriptor.bools, [&](bool value) { return m_texts.boolean(value); });
    addEach(path, descriptor.strings, [](const std::string& value) { return value; });
    addEach(path, descriptor.integers, [&](std::int64_t value) { return m_texts.number(value); });
    addEach(path, descriptor.doubles, [&](double value) { return m_texts.real(value); });
    addEach(path, descriptor.arrays, [&](const PlistType::SubArray& value) { return text(value); });
    for (const auto& [key, dictionary] : descriptor.dictionaries) addDictionary({event, key}, dictionary);
    if (descriptor == PlistType()) m_leaves.emplace(path, std::nullopt);
  }

  std::string joined() const {
    std::vector<std::string> lines;
    for (const auto& [path, value] : m_leaves) {
      const std::string place = m_texts.joined(path, " / ");
      lines.push_back(value ? m_texts.line(place, *value) : place);
    }
    return joinedLines(lines);
  }

 private:
  using Path = std::vector<std::string>;
  using Text = std::optional<std::string>;  // none: there is nothing to be shown

  template <typename Element, typename TextOf>
  void addEach(const Path& path, const StringMap<Element>& elements, const TextOf& textOf) {
    for (const auto& [key, element] : elements) {
      Path place = path;
      place.push_back(key);
      m_leaves.emplace(std::move(place), textOf(element));
    }
  }

  void addDictionary(const Path& path, const PlistType::SubDictionary& dictionary) {
    addEach(path, dictionary.subDictionaries, [&](const PlistType::SubDictionaryType& value) { return text(value); });
    if (dictionary.subDictionaries.empty()) m_leaves.emplace(path, std::nullopt);
  }

  Text text(const PlistType::SubDictionaryType& value) const {
    if (value.bool_) return m_texts.boolean(*value.bool_);
    if (value.string) return value.string;
    if (value.integer) return m_texts.number(*value.integer);
    if (value.double_) return m_texts.real(*value.double_);
    return value.data ? Text(m_texts.data(*value.data)) : std::nullopt;
  }

  Text text(const PlistType::SubArray& array) const {
    if (array.strings) return m_texts.joined(*array.strings, ", ");
    if (array.integers) return joined(*array.integers, [&](std::int64_t number) { return m_texts.number(number); });
    if (array.doubles) return joined(*array.doubles, [&](double number) { return m_texts.real(number); });
    return std::nullopt;
  }

  template <typename Element, typename TextOf>
  std::string joined(const std::vector<Element>& elements, const TextOf& textOf) const {
    std::vector<std::string> parts;
    parts.reserve(elements.size());
    for (const Element element : elements) parts.push_back(textOf(element));
    return m_texts.joined(parts, ", ");
  }

  const ValueTexts& m_texts;
  std::map<Path, Text> m_leaves;
};

}  // namespace

std::vector<KeyValueItem> launchEvents(const LaunchEvents& events, const ValueTexts& texts, const Collator& collator) {
  std::vector<KeyValueItem> rows;
  for (const auto& [stream, descriptors] : events.dictionaries) {
    Leaves leaves(texts);
    for (const auto& [event, descriptor] : descriptors.subDictionaries) leaves.addEvent(event, descriptor);
    rows.push_back({stream, leaves.joined()});
  }
  sortByKey(rows, collator);
  return rows;
}

}  // namespace mirvel::NestedRows
