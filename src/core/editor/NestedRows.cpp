#include "core/editor/NestedRows.h"

#include <algorithm>
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

/// A port is a name made of digits, and is written without separators.
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

}  // namespace mirvel::NestedRows
