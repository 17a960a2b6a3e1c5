#include "core/notifications/Exceptions.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "core/base/Const.h"

namespace mirvel {

using propertylist::Array;
using propertylist::Value;

namespace {

constexpr std::array lists{Exceptions::Key::exceptions, Exceptions::Key::exceptionsPrefix,
                           Exceptions::Key::quietFailures};

Array arrayIn(const Value* value) {
  const auto* const array = value ? value->as<Array>() : nullptr;
  return array ? *array : Array();
}

bool isText(const Value& element, std::string_view text) {
  const auto* const found = element.as<std::string>();
  return found && *found == text;
}

/// The keys whose values have another type than they should.
std::vector<std::string> wrongKeys(const propertylist::Dictionary& contents) {
  std::vector<std::string> wrong;
  for (const auto key : lists) {
    if (contents.find(key) && !contents.get<Array>(key)) wrong.emplace_back(key);
  }
  const auto flag = Exceptions::Key::tellFailures;
  if (contents.find(flag) && !contents.get<bool>(flag)) wrong.emplace_back(flag);
  return wrong;
}

}  // namespace

Exceptions::Exceptions(const std::filesystem::path& applicationSupport, StoreTroubles* troubles)
    : m_file(applicationSupport / Const::FileName::exceptions), m_store(m_file, troubles) {}

std::vector<std::string> Exceptions::texts(std::string_view key) {
  setAsideWrongTypes();
  std::vector<std::string> result;
  for (const Value& element : arrayIn(m_store.find(key))) {
    const auto* const text = element.as<std::string>();
    if (text && !text->empty()) result.push_back(*text);
  }
  return result;
}

std::vector<std::string> Exceptions::prefixes() {
  auto result = texts(Key::exceptionsPrefix);
  const auto& contents = m_store.contents();
  if (!contents.empty() && !contents.find(Key::exceptionsPrefix)) result.emplace_back(defaultPrefix);
  return result;
}

bool Exceptions::tellsFailures() {
  setAsideWrongTypes();
  const bool* const stored = m_store.get<bool>(Key::tellFailures);
  return !stored || *stored;
}

bool Exceptions::isExcluded(std::string_view name, Kind kind) {
  const auto excluded = prefixes();
  return std::any_of(excluded.begin(), excluded.end(),
                     [&](const std::string& prefix) { return isPrefixOf(prefix, name, kind); });
}

bool Exceptions::isListed(std::string_view key, std::string_view name) {
  const auto listed = texts(key);
  return std::find(listed.begin(), listed.end(), name) != listed.end();
}

bool Exceptions::tellsChanges(std::string_view name, Kind kind) {
  return !isListed(Key::exceptions, name) && !isExcluded(name, kind);
}

bool Exceptions::tellsFailures(std::string_view name, Kind kind) {
  return tellsFailures() && !isListed(Key::quietFailures, name) && !isExcluded(name, kind);
}

Result<void> Exceptions::setTellsChanges(const std::string& name, bool isOn) {
  return setListed(Key::exceptions, name, !isOn);
}

Result<void> Exceptions::setTellsFailures(const std::string& name, bool isOn) {
  return setListed(Key::quietFailures, name, !isOn);
}

Result<void> Exceptions::setTellsFailures(bool isOn) {
  setAsideWrongTypes();
  ensureKeys();
  return m_store.set(std::string(Key::tellFailures), isOn);
}

Result<void> Exceptions::setListed(std::string_view key, const std::string& name, bool isListed) {
  if (name.empty()) return {};
  setAsideWrongTypes();
  ensureKeys();
  m_store.update(std::string(key), [name, isListed](const Value* present) -> std::optional<Value> {
    Array array = arrayIn(present);
    const auto isName = [&](const Value& element) { return isText(element, name); };
    if (!isListed) std::erase_if(array, isName);
    if (isListed && std::none_of(array.begin(), array.end(), isName)) array.emplace_back(name);
    return array;
  });
  return m_store.write();
}

Result<void> Exceptions::replacePrefix(const std::string& old, std::size_t occurrence, const std::string& text) {
  setAsideWrongTypes();
  ensureKeys();
  m_store.update(std::string(Key::exceptionsPrefix), [=](const Value* present) -> std::optional<Value> {
    Array array = arrayIn(present);
    std::size_t passed = 0;
    const auto found = std::find_if(array.begin(), array.end(), [&](const Value& element) {
      return !old.empty() && isText(element, old) && passed++ == occurrence;
    });
    if (text.empty()) {
      if (found != array.end()) array.erase(found);
    } else if (found != array.end()) {
      *found = text;
    } else {
      array.emplace_back(text);
    }
    return array;
  });
  return m_store.write();
}

bool Exceptions::addMissingPrefixes() {
  setAsideWrongTypes();
  const auto& contents = m_store.contents();
  if (contents.empty() || contents.find(Key::exceptionsPrefix)) return false;
  ensureKeys();
  (void)m_store.write();  // the store reports a failure, and the prefix counts nevertheless
  return true;
}

/// Prepares a write: a new file gets both lists, so that its empty list of prefixes isn't taken for a missing one.
void Exceptions::ensureKeys() {
  const bool isNew = m_store.contents().empty();
  const auto orElse = [](Array fallback) {
    return [fallback = std::move(fallback)](const Value* present) -> std::optional<Value> {
      return present ? *present : Value(fallback);
    };
  };
  m_store.update(std::string(Key::exceptions), orElse({}));
  m_store.update(std::string(Key::exceptionsPrefix), orElse(isNew ? Array() : Array{Value(defaultPrefix)}));
}

void Exceptions::setAsideWrongTypes() {
  const auto wrong = wrongKeys(m_store.contents());
  if (wrong.empty()) return;
  auto good = m_store.contents();
  for (const std::string& key : wrong) good.remove(key);
  // If the file stays, such a key counts as absent.
  (void)m_store.setAside({.code = Error::Code::WrongType,
                          .message = "the value has the wrong type",
                          .file = m_file.native(),
                          .keyPath = wrong.front()},
                         good);
}

}  // namespace mirvel
