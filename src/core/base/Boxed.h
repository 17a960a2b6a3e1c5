#pragma once

#include <memory>
#include <optional>
#include <utility>

namespace mirvel {

/// An optional value that is absent most of the time and then takes the room of a pointer, where `std::optional` keeps
/// room for the value. For the rest it is like that: copies copy the value, and to ask for an absent one is a bug.
template <typename T>
class Boxed {
 public:
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

  explicit operator bool() const { return m_value != nullptr; }
  bool has_value() const { return m_value != nullptr; }
  T& operator*() { return *m_value; }
  const T& operator*() const { return *m_value; }
  T* operator->() { return m_value.get(); }
  const T* operator->() const { return m_value.get(); }
  T& emplace() { return *(m_value = std::make_unique<T>()); }
  void reset() { m_value.reset(); }

  bool operator==(const Boxed& other) const {
    return m_value && other.m_value ? *m_value == *other.m_value : m_value == other.m_value;
  }

 private:
  std::unique_ptr<T> m_value;
};

}  // namespace mirvel
