#include "core/editor/KeyAccess.h"

#include <algorithm>

#include "core/text/Octal.h"

namespace mirvel::access {

using propertylist::Value;

Value shown(bool value, const ValueTexts& /*texts*/) {
  return value;
}

Value shown(std::int64_t value, const ValueTexts& texts) {
  return texts.number(value);
}

Value shown(const std::string& value, const ValueTexts& /*texts*/) {
  return value;
}

Value shown(const std::vector<std::string>& value, const ValueTexts& /*texts*/) {
  return joinedLines(value);
}

Value shown(const Plist::LimitLoadToSessionType& value, const ValueTexts& /*texts*/) {
  return joinedLines(value.types);
}

Value shown(const jobfile::StringMap<std::vector<std::string>>& value, const ValueTexts& /*texts*/) {
  std::vector<std::string> lines;
  for (const auto& [key, values] : value) lines.insert(lines.end(), values.begin(), values.end());
  return joinedLines(lines);
}

Value shown(const Plist::ResourceLimits& value, const ValueTexts& texts) {
  std::vector<std::string> lines;
  for (const auto& member : Plist::ResourceLimits::members()) {
    const auto& limit = value.*member.limit;
    if (limit) lines.push_back(texts.line(std::string(member.key), texts.number(*limit)));
  }
  return joinedLines(lines);
}

std::optional<Value> shown(const Plist::Umask& value, const ValueTexts& /*texts*/) {
  return value.int_ ? std::optional<Value>(Octal::displayString(*value.int_)) : std::nullopt;
}

Value shown(const Plist::InetdCompatibility& value, const ValueTexts& texts) {
  jobfile::StringMap<std::string> entries;
  for (const auto& [key, isOn] : value.bools) entries.emplace(key, texts.boolean(isOn));
  for (const auto& [key, number] : value.integers) entries.emplace(key, texts.number(number));
  std::vector<std::string> lines;
  for (const auto& [key, text] : entries) lines.push_back(texts.line(key, text));
  return joinedLines(lines);
}

Value shownPaths(const std::vector<std::string>& paths, const ValueTexts& texts) {
  std::vector<std::string> lines;
  for (const std::string& path : paths) {
    if (!path.empty()) lines.push_back(texts.path(path));
  }
  return joinedLines(lines);
}

namespace {

std::vector<jobfile::OpaqueValue> opaqueValuesBelow(const Plist& plist, const Path& path) {
  auto values = plist.opaqueValues();
  std::erase_if(values, [&](const auto& value) {
    return value.path.size() <= path.size() || !std::equal(path.begin(), path.end(), value.path.begin());
  });
  return values;
}

}  // namespace

bool hasOpaqueValuesBelow(const Plist& plist, const Path& path) {
  return !opaqueValuesBelow(plist, path).empty();
}

void removeOpaqueValuesBelow(Plist& plist, const Path& path) {
  const auto read = plist.asRead();
  for (auto& value : read ? opaqueValuesBelow(*read, path) : std::vector<jobfile::OpaqueValue>()) {
    auto& removed = plist.removedValues;
    if (std::find(removed.begin(), removed.end(), value.path) == removed.end()) removed.push_back(value.path);
  }
}

std::optional<bool> plainKeepAlive(const Plist& plist) {
  const auto read = plist.asRead();
  return read && read->keepAlive ? read->keepAlive->bool_ : true;
}

}  // namespace mirvel::access
