#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "core/editor/FieldAccess.h"
#include "core/editor/TableFormat.h"
#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/jobfile/PlistKeys.h"
#include "core/propertylist/Value.h"

/// The functions by which the table of fields reads and writes the keys of a record, made from the types of its
/// members. For Fields.cpp only.
namespace mirvel::access {

using jobfile::KeepAlive;
using jobfile::Plist;
using Key = Plist::CodingKeys;
using Path = std::vector<std::string_view>;

// Values of each type for the read-only view. It has rows of its own for values of other types.

propertylist::Value shown(bool value, const ValueTexts& texts);
propertylist::Value shown(std::int64_t value, const ValueTexts& texts);
propertylist::Value shown(const std::string& value, const ValueTexts& texts);
propertylist::Value shown(const std::vector<std::string>& value, const ValueTexts& texts);
propertylist::Value shown(const Plist::LimitLoadToSessionType& value, const ValueTexts& texts);
propertylist::Value shown(const jobfile::StringMap<std::vector<std::string>>& value, const ValueTexts& texts);
propertylist::Value shown(const Plist::ResourceLimits& value, const ValueTexts& texts);
std::optional<propertylist::Value> shown(const Plist::Umask& value, const ValueTexts& texts);
propertylist::Value shown(const Plist::InetdCompatibility& value, const ValueTexts& texts);
propertylist::Value shownPaths(const std::vector<std::string>& paths, const ValueTexts& texts);

// Values of each type for a control, and back.

template <typename T>
concept IsPlain = std::same_as<T, bool> || std::same_as<T, std::int64_t> || std::same_as<T, std::string>;
template <typename T>
concept HasRows = requires(const T& value) {
  rowsOf(value);
};

template <IsPlain T>
FieldValue valueOf(const T& value) {
  return value;
}
template <HasRows T>
FieldValue valueOf(const T& value) {
  return rowsOf(value);
}
inline FieldValue valueOf(const Plist::Umask& value) {
  return value.int_ ? FieldValue(*value.int_) : FieldValue();
}

template <IsPlain T>
void assign(T& value, const T& entered) {
  value = entered;
}
inline void assign(Plist::Umask& umask, std::int64_t mask) {
  umask.int_ = mask;
}

// A holder is the optional member in which the record stores a value.

template <typename Holder>
using Content = std::remove_cvref_t<decltype(*std::declval<Holder&>())>;
template <typename Holder>
concept IsEditable = requires(const Content<Holder>& content) {
  valueOf(content);
};

template <typename Holder>
FieldValue readField(const Holder& holder) {
  return holder ? valueOf(*holder) : FieldValue();
}

template <typename T, typename Holder>
void assignIf(const FieldValue& value, Holder& holder) {
  if constexpr (requires(const T& entered) { assign(*holder, entered); }) {
    if (const T* const entered = std::get_if<T>(&value)) assign(holder ? *holder : holder.emplace(), *entered);
  }
}

/// Whether the value at this path has others below it that the record doesn't know.
bool hasOpaqueValuesBelow(const Plist& plist, const Path& path);
/// Removes them, so that they don't come back when the removed key gets a new value. Includes those that have been
/// replaced.
void removeOpaqueValuesBelow(Plist& plist, const Path& path);

/// `find` returns the holder in a record, or null.
template <typename Find>
void writeRows(Plist& plist, const std::vector<TableRow>& rows, const Path& path, const Find& find) {
  auto& holder = *find(plist);
  using Container = Content<decltype(holder)>;
  const auto read = rows.empty() || !holder ? plist.asRead() : std::nullopt;
  const auto* const inFile = read ? find(*read) : nullptr;
  const bool isEmptyInFile = inFile && *inFile && **inFile == Container();
  if (rows.empty() && !isEmptyInFile && !hasOpaqueValuesBelow(plist, path)) return holder.reset();
  if (!holder) holder = inFile && *inFile ? **inFile : Container();
  fromRows(rows, *holder);
}

template <typename Find>
void writeField(Plist& plist, const FieldValue& value, const Path& path, const Find& find) {
  auto& holder = *find(plist);
  if (std::holds_alternative<std::monostate>(value)) {
    removeOpaqueValuesBelow(plist, path);
    holder.reset();
  } else if constexpr (HasRows<Content<decltype(holder)>>) {
    if (const auto* const rows = std::get_if<std::vector<TableRow>>(&value)) writeRows(plist, *rows, path, find);
  } else {
    assignIf<bool>(value, holder);
    assignIf<std::int64_t>(value, holder);
    assignIf<std::string>(value, holder);
  }
}

// The functions for each key.

template <Key key>
constexpr const auto& keyRow = std::get<static_cast<std::size_t>(key)>(jobfile::plistKeys);

/// By the type of the key's member.
template <Key key>
struct OfKey {
  static bool isSet(const Plist& plist) { return (plist.*keyRow<key>.field).has_value(); }
  static void remove(Plist& plist) { (plist.*keyRow<key>.field).reset(); }
  static std::optional<propertylist::Value> display(const Plist& plist, const ValueTexts& texts) {
    const auto& field = plist.*keyRow<key>.field;
    if constexpr (requires { shown(*field, texts); }) {
      if (field) return shown(*field, texts);
    }
    return std::nullopt;
  }
  static FieldValue read(const Plist& plist) {
    if constexpr (IsEditable<decltype(plist.*keyRow<key>.field)>) {
      return readField(plist.*keyRow<key>.field);
    } else {
      return {};
    }
  }
  static void write(Plist& plist, const FieldValue& value) {
    if constexpr (IsEditable<decltype(plist.*keyRow<key>.field)>) {
      writeField(plist, value, {keyRow<key>.text}, [](auto& record) { return &(record.*keyRow<key>.field); });
    }
  }

  static constexpr FieldAccess functions{isSet, remove, display, read, write};
};

template <Key key>
constexpr FieldAccess paths() {
  FieldAccess result = OfKey<key>::functions;
  result.display = [](const Plist& plist, const ValueTexts& texts) -> std::optional<propertylist::Value> {
    const auto& field = plist.*keyRow<key>.field;
    if (!field || field->empty()) return std::nullopt;
    return shownPaths(*field, texts);
  };
  return result;
}

/// For keys that the read-only view shows in rows of its own.
constexpr FieldAccess undisplayed(FieldAccess functions) {
  functions.display = [](const Plist&, const ValueTexts&) -> std::optional<propertylist::Value> {
    return std::nullopt;
  };
  return functions;
}

/// For a box that is off if the key is true.
template <Key key>
constexpr FieldAccess negated() {
  FieldAccess result = OfKey<key>::functions;
  result.read = [](const Plist& plist) -> FieldValue {
    const auto& field = plist.*keyRow<key>.field;
    return field ? FieldValue(!*field) : FieldValue();
  };
  result.write = [](Plist& plist, const FieldValue& value) {
    const bool* const isOn = std::get_if<bool>(&value);
    OfKey<key>::write(plist, isOn ? FieldValue(!*isOn) : FieldValue());
  };
  return result;
}

inline constexpr FieldAccess label{
    .isSet = [](const Plist&) { return true; },
    .remove = [](Plist& plist) { plist.name.clear(); },
    .display = [](const Plist& plist, const ValueTexts&) -> std::optional<propertylist::Value> { return plist.name; },
    .read = [](const Plist& plist) -> FieldValue { return plist.name; },
    .write =
        [](Plist& plist, const FieldValue& value) {
          const auto* const text = std::get_if<std::string>(&value);
          plist.name = text ? *text : std::string();
        }};

/// The box that keeps a job alive. It is on if the key exists, whatever its value; off removes the key and its
/// conditions.
inline constexpr FieldAccess keepAlive =
    undisplayed({.isSet = [](const Plist& plist) { return plist.keepAlive.has_value(); },
                 .remove = [](Plist& plist) { plist.keepAlive.reset(); },
                 .read = [](const Plist& plist) -> FieldValue { return plist.keepAlive.has_value(); },
                 .write =
                     [](Plist& plist, const FieldValue& value) {
                       removeOpaqueValuesBelow(plist, {"KeepAlive"});
                       plist.keepAlive.reset();
                       if (value == FieldValue(true)) plist.keepAlive.emplace().bool_ = true;
                     }});

/// The plain value for a key that has lost its last condition: that of the file, or true. Null if the file has
/// conditions.
std::optional<bool> plainKeepAlive(const Plist& plist);

/// A condition of `KeepAlive`. Writing it replaces the plain value.
template <KeepAlive::CodingKeys key, auto condition>
struct OfCondition {
  static bool isSet(const Plist& plist) { return plist.keepAlive && (*plist.keepAlive.*condition).has_value(); }
  static void remove(Plist& plist) { write(plist, {}); }
  static FieldValue read(const Plist& plist) {
    if (!plist.keepAlive) return {};
    return readField(*plist.keepAlive.*condition);
  }
  static void write(Plist& plist, const FieldValue& value) {
    if (!plist.keepAlive) plist.keepAlive.emplace();
    plist.keepAlive->bool_.reset();
    writeField(plist, value, {"KeepAlive", KeepAlive::text(key)},
               [](auto& record) { return record.keepAlive ? &(*record.keepAlive.*condition) : nullptr; });
    if (*plist.keepAlive == KeepAlive()) plist.keepAlive->bool_ = plainKeepAlive(plist);
  }

  static constexpr FieldAccess functions =
      undisplayed({.isSet = isSet, .remove = remove, .read = read, .write = write});
};

}  // namespace mirvel::access
