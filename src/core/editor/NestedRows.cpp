#include "core/editor/NestedRows.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace mirvel::NestedRows {

namespace {

using jobfile::MachServices;
using jobfile::Sockets;
using jobfile::StringMap;

/// Keys and values, one line each.
class Lines {
 public:
  explicit Lines(const ValueTexts& texts) : m_texts(texts) {}

  void add(std::string_view key, const std::string& value) { m_lines.push_back(m_texts.line(std::string(key), value)); }
  void addBoolean(std::string_view key, std::optional<bool> value) {
    if (value) add(key, m_texts.boolean(*value));
  }
  void addString(std::string_view key, const std::optional<std::string>& value) {
    if (value) add(key, *value);
  }
  void addNumber(std::string_view key, std::optional<std::int64_t> value) {
    if (value) add(key, m_texts.number(*value));
  }

  std::string joined() const { return joinedLines(m_lines); }

 private:
  const ValueTexts& m_texts;
  std::vector<std::string> m_lines;
};

// Services.

std::string joinedEntries(const StringMap<std::string>& entries, const ValueTexts& texts) {
  std::vector<std::string> parts;
  for (const auto& [key, value] : entries) parts.push_back(texts.joined({key, value}, " = "));
  return texts.joined(parts, ", ");
}

std::string lines(const MachServices::SubDictionary& service, const ValueTexts& texts) {
  using K = MachServices::SubDictionary::CodingKeys;
  Lines result(texts);
  result.addBoolean(MachServices::SubDictionary::text(K::ResetAtClose), service.resetAtClose);
  result.addBoolean(MachServices::SubDictionary::text(K::HideUntilCheckIn), service.hideUntilCheckIn);
  result.addString(MachServices::SubDictionary::text(K::DrainMessagesOnCrash), service.drainMessagesOnCrash);
  if (service.exceptionServer) {
    result.add(MachServices::SubDictionary::text(K::ExceptionServer), joinedEntries(*service.exceptionServer, texts));
  }
  result.addNumber(MachServices::SubDictionary::text(K::HostSpecialPort), service.hostSpecialPort);
  result.addNumber(MachServices::SubDictionary::text(K::TaskSpecialPort), service.taskSpecialPort);
  return result.joined();
}

// Sockets.

/// A port is an identifier, and so shown without the separators of the locale.
std::string serviceName(const Sockets::SubDictionary::SockServiceName& name) {
  return name.int_ ? std::to_string(*name.int_) : name.string.value_or("");
}

std::string announcement(const Sockets::SubDictionary::Bonjour& bonjour, const ValueTexts& texts) {
  if (bonjour.bool_) return texts.boolean(*bonjour.bool_);
  return bonjour.stringArray ? texts.joined(*bonjour.stringArray, ", ") : bonjour.string.value_or("");
}

void addLines(Lines& result, const Sockets::SubDictionary& socket, const ValueTexts& texts) {
  using Socket = Sockets::SubDictionary;
  using K = Socket::CodingKeys;
  result.addString(Socket::text(K::SockType), socket.sockType);
  result.addBoolean(Socket::text(K::SockPassive), socket.sockPassive);
  result.addString(Socket::text(K::SockNodeName), socket.sockNodeName);
  if (socket.sockServiceName) result.add(Socket::text(K::SockServiceName), serviceName(*socket.sockServiceName));
  result.addString(Socket::text(K::SockFamily), socket.sockFamily);
  result.addString(Socket::text(K::SockProtocol), socket.sockProtocol);
  result.addString(Socket::text(K::SockPathName), socket.sockPathName);
  result.addString(Socket::text(K::SecureSocketWithKey), socket.secureSocketWithKey);
  result.addNumber(Socket::text(K::SockPathOwner), socket.sockPathOwner);
  result.addNumber(Socket::text(K::SockPathGroup), socket.sockPathGroup);
  result.addNumber(Socket::text(K::SockPathMode), socket.sockPathMode);
  if (socket.bonjour) result.add(Socket::text(K::Bonjour), announcement(*socket.bonjour, texts));
  result.addString(Socket::text(K::MulticastGroup), socket.multicastGroup);
}

std::string lines(const Sockets::SubDictionary& socket, const ValueTexts& texts) {
  Lines result(texts);
  if (socket.array.empty()) addLines(result, socket, texts);
  for (const auto& element : socket.array) addLines(result, element, texts);
  return result.joined();
}

}  // namespace

void sortByKey(std::vector<KeyValueItem>& rows, const Collator& collator) {
  std::vector<std::pair<std::string, KeyValueItem>> sorted;
  sorted.reserve(rows.size());
  for (KeyValueItem& row : rows) sorted.emplace_back(collator.sortKey(row.key), std::move(row));
  std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  rows.clear();
  for (auto& row : sorted) rows.push_back(std::move(row.second));
}

std::vector<KeyValueItem> machServices(const MachServices& services, const ValueTexts& texts,
                                       const Collator& collator) {
  std::vector<KeyValueItem> rows;
  for (const auto& [name, isOn] : services.bools) rows.push_back({name, texts.boolean(isOn)});
  for (const auto& [name, text] : services.strings) rows.push_back({name, text});
  for (const auto& [name, service] : services.dictionaries) rows.push_back({name, lines(service, texts)});
  sortByKey(rows, collator);
  return rows;
}

std::vector<KeyValueItem> sockets(const Sockets& all, const ValueTexts& texts, const Collator& collator) {
  std::vector<KeyValueItem> rows;
  for (const auto& [name, socket] : all.dictionaries) rows.push_back({name, lines(socket, texts)});
  sortByKey(rows, collator);
  return rows;
}

namespace {

using jobfile::LaunchEvents;
using jobfile::PlistType;
using jobfile::StringMap;

/// The values of the events of one stream, by the path to each.
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
  using Text = std::optional<std::string>;  // null for an empty container, of which only the path is shown

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
