#include "core/settings/Defaults.h"

#include <array>

namespace mirvel {

namespace {

/// A default for a key that is absent. The table includes keys for which there is no accessor yet.
struct Registered {
  std::string_view key;
  Defaults::Value value;
};

constexpr std::array table{
    Registered{Defaults::Key::showSystemJobs, false},
    Registered{Defaults::Key::showInternalHelpers, false},
    Registered{Defaults::Key::automaticHelp, true},
    Registered{Defaults::Key::automaticPATH, true},
    Registered{Defaults::Key::runAgent, false},
    Registered{Defaults::Key::numberOfSavedRevisions, std::int64_t{10}},
    Registered{Defaults::Key::selectedMode, std::int64_t{0}},
    Registered{"Exceptions", std::string_view()},
    Registered{Defaults::Key::preferFullScreen, false},
    Registered{Defaults::Key::preferencesTab, std::int64_t{0}},
    Registered{"Resume", true},
    Registered{Defaults::Key::hasManuallyChangedTheme, false},
    Registered{Defaults::Key::showLineNumbers, true},
    Registered{Defaults::Key::showTitleBar, false},
    Registered{Defaults::Key::notificationTab, std::int64_t{0}},
    Registered{Defaults::Key::logLength, std::int64_t{0}},
    Registered{Defaults::Key::logPeriod, std::int64_t{1}},
    Registered{Defaults::Key::followLog, false},
    Registered{Defaults::Key::firstMirvelLaunch, true},
    Registered{Defaults::Key::editSystemJobs, false},
    Registered{Defaults::Key::automaticallyCheckForUpdate, true},
    Registered{Defaults::Key::showInvalidData, true},
    Registered{Defaults::Key::checkJobs, true},
};

template <typename T>
T registeredOr(std::string_view key, T fallback) {
  const auto found = Defaults::registered(key);
  const T* value = found ? std::get_if<T>(&*found) : nullptr;
  return value ? *value : fallback;
}

}  // namespace

std::optional<Defaults::Value> Defaults::registered(std::string_view key) {
  for (const Registered& row : table) {
    if (row.key == key) return row.value;
  }
  return std::nullopt;
}

bool Defaults::boolean(std::string_view key) const {
  const auto* const stored = m_file.get<bool>(key);
  return stored ? *stored : registeredOr(key, false);
}

std::int64_t Defaults::integer(std::string_view key) const {
  const auto* const stored = m_file.get<propertylist::Integer>(key);
  const auto number = stored ? stored->toInt64() : std::nullopt;
  return number ? *number : registeredOr(key, std::int64_t{0});
}

std::optional<std::string> Defaults::text(std::string_view key) const {
  const auto* const stored = m_file.get<std::string>(key);
  return stored ? std::optional(*stored) : std::nullopt;
}

Result<void> Defaults::setText(std::string_view key, std::string value) {
  return write(key, std::move(value));
}

std::vector<std::string> Defaults::texts(std::string_view key) const {
  std::vector<std::string> texts;
  if (const auto* const stored = m_file.get<propertylist::Array>(key)) {
    for (const propertylist::Value& element : *stored) {
      if (const auto* const text = element.as<std::string>()) texts.push_back(*text);
    }
  }
  return texts;
}

Result<void> Defaults::setTexts(std::string_view key, const std::vector<std::string>& values) {
  return write(key, propertylist::Array(values.begin(), values.end()));
}

std::optional<std::vector<std::int64_t>> Defaults::expandedGroups() const {
  const auto* const stored = m_file.get<propertylist::Array>(Key::expandedGroups);
  if (!stored) return std::nullopt;
  std::vector<std::int64_t> kinds;
  for (const propertylist::Value& element : *stored) {
    const propertylist::Integer* kind = element.as<propertylist::Integer>();
    if (const auto number = kind ? kind->toInt64() : std::nullopt) kinds.push_back(*number);
  }
  return kinds;
}

Result<void> Defaults::setExpandedGroups(const std::vector<std::int64_t>& kinds) {
  return write(Key::expandedGroups, propertylist::Array(kinds.begin(), kinds.end()));
}

Result<void> Defaults::set(std::string_view key, bool value) {
  return write(key, value);
}

Result<void> Defaults::set(std::string_view key, std::int64_t value) {
  return write(key, value);
}

Result<void> Defaults::remove(std::string_view key) {
  return write(key, std::nullopt);
}

Result<void> Defaults::update(std::string_view key, Store::Edit edit) {
  const std::string name(key);
  m_file.update(name, std::move(edit));
  auto written = m_file.write();
  m_changed.post(name);
  return written;
}

Result<void> Defaults::removeAll(const std::set<std::string_view>& kept) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : m_file.contents()) {
    if (!kept.contains(key)) keys.push_back(key);
  }
  for (const std::string& key : keys) m_file.put(key, std::nullopt);
  auto written = m_file.write();
  for (const std::string& key : keys) m_changed.post(key);
  return written;
}

Result<void> Defaults::write(std::string_view key, std::optional<propertylist::Value> value) {
  const std::string name(key);
  auto written = m_file.set(name, std::move(value));
  m_changed.post(name);
  return written;
}

}  // namespace mirvel
