#pragma once

#include <memory>
#include <optional>
#include <utility>

namespace mirvel {

/// Like `std::optional`, but allocated on the heap: an absent value takes only the size of a pointer. For large members
/// that are absent most of the time. Copying copies the value; accessing an absent one is undefined behaviour.
template <typename T>
class Boxed {
 public:
  /// Absent.
  Boxed() = default;
  Boxed(std::nullopt_t) {}
  Boxed(T value) : m_value(std::make_unique<T>(std::move(value))) {}
  Boxed(const Boxed& other) : m_value(other ? std::make_unique<T>(*other) : nullptr) {}
  Boxed(Boxed&&) noexcept = default;
  Boxed& operator=(Boxed other) noexcept {
    m_value = std::move(other.m_value);
    return *this;
  }
  ~Boxed() = default;

  /// Whether there is a value.
  explicit operator bool() const { return m_value != nullptr; }
  bool has_value() const { return m_value != nullptr; }
  T& operator*() { return *m_value; }
  const T& operator*() const { return *m_value; }
  T* operator->() { return m_value.get(); }
  const T* operator->() const { return m_value.get(); }
  /// Replaces the value by a default-constructed one and returns it.
  T& emplace() { return *(m_value = std::make_unique<T>()); }
  /// Makes the value absent.
  void reset() { m_value.reset(); }

  /// Equal if both are absent, or both are present with equal values.
  bool operator==(const Boxed& other) const {
    return m_value && other.m_value ? *m_value == *other.m_value : m_value == other.m_value;
  }

 private:
  std::unique_ptr<T> m_value;
};

}  // namespace mirvel
