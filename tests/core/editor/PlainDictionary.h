#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "core/propertylist/Value.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

/// A dictionary that knows nothing of jobs, and the operations that were made on it, for the script edits.py.
class PlainDictionary {
 public:
  /// Keys of dictionaries and indexes of arrays.
  using Path = propertylist::Array;

  explicit PlainDictionary(propertylist::Dictionary start) : m_root(std::move(start)) {}

  static Path below(Path path, propertylist::Value step) {
    path.push_back(std::move(step));
    return path;
  }

  const propertylist::Dictionary& root() const { return *m_root.as<propertylist::Dictionary>(); }
  /// The value as it is now; null if there is none.
  const propertylist::Value* find(const Path& path) const {
    const propertylist::Value* value = &m_root;
    for (const auto& step : path) {
      if (!value) return nullptr;
      const auto* const entries = value->as<propertylist::Dictionary>();
      const auto* const elements = value->as<propertylist::Array>();
      const auto* const key = step.as<std::string>();
      if (entries) value = key ? entries->find(*key) : nullptr;
      if (elements) value = !key && index(step) < elements->size() ? &elements->at(index(step)) : nullptr;
      if (!entries && !elements) return nullptr;
    }
    return value;
  }
  template <typename T>
  const T* get(const Path& path) const {
    const auto* const value = find(path);
    return value ? value->as<T>() : nullptr;
  }

  /// Sets a value, and makes a dictionary of everything above that has no place for it.
  void set(const Path& path, const propertylist::Value& value) {
    const Path above(path.begin(), path.end() - 1);
    const auto* const key = path.back().as<std::string>();
    if (!key) {
      at<propertylist::Array>(above)->at(index(path.back())) = value;
    } else if (auto* const entries = at<propertylist::Dictionary>(above)) {
      entries->set(*key, value);
    } else {
      return set(above, propertylist::Dictionary{{*key, value}});
    }
    note(path, {{"set", value}});
  }
  /// The path ends with an index.
  void insert(const Path& path, const propertylist::Value& value) {
    auto& list = *at<propertylist::Array>(Path(path.begin(), path.end() - 1));
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(index(path.back())), value);
    note(path, {{"insert", value}});
  }
  /// Does nothing if there is no such value.
  void remove(const Path& path) {
    if (!find(path)) return;
    const Path above(path.begin(), path.end() - 1);
    if (auto* const list = at<propertylist::Array>(above)) {
      list->erase(list->begin() + static_cast<std::ptrdiff_t>(index(path.back())));
    } else {
      (void)at<propertylist::Dictionary>(above)->remove(*path.back().as<std::string>());
    }
    note(path, {});
  }

  /// All operations so far, as a property list.
  std::string operations() const { return propertylist::writeBinary(m_operations); }

 private:
  static std::size_t index(const propertylist::Value& step) {
    return static_cast<std::size_t>(*step.as<propertylist::Integer>()->toInt64());
  }
  template <typename T>
  T* at(const Path& path) {
    return const_cast<T*>(std::as_const(*this).get<T>(path));
  }
  void note(const Path& path, propertylist::Dictionary operation) {
    operation.set("path", path);
    m_operations.push_back(std::move(operation));
  }

  propertylist::Value m_root;
  propertylist::Array m_operations;
};

}  // namespace mirvel
