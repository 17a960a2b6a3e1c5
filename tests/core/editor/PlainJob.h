#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "core/editor/Fields.h"
#include "core/editor/PlainDictionary.h"
#include "core/jobfile/JobFile.h"

namespace mirvel {

/// A job file as a plain dictionary, with the rules of its keys that edits have to follow.
class PlainJob : public PlainDictionary {
 public:
  using Value = propertylist::Value;
  using Dict = jobfile::Dict;
  using List = jobfile::List;
  using Strings = std::vector<std::string>;

  explicit PlainJob(const Dict& file) : PlainDictionary(file), m_file(file), m_kept(file) {}

  /// As it was read, or as the text sheet has replaced it.
  const Dict& file() const { return m_file; }
  /// After the text sheet.
  void becomesFile() {
    m_file = root();
    m_kept = PlainDictionary(m_file);
  }

  static bool isWhole(const Value& value) {
    const auto* const integer = value.as<Integer>();
    const auto* const real = value.as<double>();
    return (integer && integer->toInt64()) || (real && std::trunc(*real) == *real);
  }
  static std::optional<Strings> stringsOf(const Value* value) {
    if (value && value->as<std::string>()) return Strings{*value->as<std::string>()};
    if (!value || !value->as<List>()) return std::nullopt;
    Strings strings;
    for (const Value& element : *value->as<List>()) {
      if (!element.as<std::string>()) return std::nullopt;
      strings.push_back(*element.as<std::string>());
    }
    return strings;
  }
  /// Whether the value is of a type that the key allows.
  static bool fits(const Field& field, const Value& value) {
    const bool isDictionary = value.as<Dict>() != nullptr;
    if (field.key == "KeepAlive") return value.as<bool>() || isDictionary;
    const auto* const text = value.as<std::string>();
    switch (field.control) {
      case Control::CheckBox:
      case Control::ThreeStateBox:
        return value.as<bool>();
      case Control::Number:
      case Control::Slider:
        return isWhole(value);
      case Control::Mask:
        return isWhole(value) || (text && !text->empty() && text->find_first_not_of("0123456789") == std::string::npos);
      case Control::Table:
        if (field.table.isDictionary) return isDictionary;
        if (field.key == "LimitLoadToSessionType") return stringsOf(&value) && value != Value(List());
        return !text && stringsOf(&value);
      default:
        return text;
    }
  }
  static bool fitsEntry(const Field& field, const std::string& name, const Value& value) {
    if (field.table.hasBox) return value.as<bool>();
    if (field.table.hasLists) return !value.as<std::string>() && stringsOf(&value);
    if (field.table.menu.empty()) return value.as<std::string>();
    return isWhole(value) && std::any_of(field.table.menu.begin(), field.table.menu.end(),
                                         [&](const auto& item) { return item.title == name; });
  }
  bool isSet(const Field& field, const Path& path) const {
    const Value* const value = find(path);
    return value && fits(field, *value);
  }
  /// A value of a wrong type in the file comes back when the one that was entered over it is removed.
  void drop(const Field& field, const Path& path) {
    const Value* const inFile = m_kept.find(path);
    if (inFile && !fits(field, *inFile)) {
      set(path, *inFile);
    } else {
      remove(path);
      m_kept.remove(path);
    }
    if (path.size() > 1) endConditions();
  }
  /// Removes what the file has, whatever its type.
  void discard(const Path& path) {
    remove(path);
    m_kept.remove(path);
  }

 private:
  using Control = Field::Control;
  using Integer = propertylist::Integer;

  /// Without conditions, `KeepAlive` is what it was in the file, or true.
  void endConditions() {
    for (const Field& field : keepAliveFields()) {
      if (isSet(field, {"KeepAlive", field.key})) return;
    }
    const Value* const inFile = m_file.find("KeepAlive");
    if (inFile && inFile->as<Dict>()) return;
    set({"KeepAlive"}, inFile && inFile->as<bool>() ? *inFile : Value(true));
  }

  Dict m_file;
  PlainDictionary m_kept;  ///< the file without what was deleted from it
};

}  // namespace mirvel
