#pragma once

#include <cassert>
#include <optional>
#include <utility>
#include <variant>

#include "core/base/Error.h"

namespace mirvel {

/// A value, or the error that stood in its way. Asking for the one that isn't there is a bug of the caller.
template <typename T>
class [[nodiscard]] Result {
 public:
  // Both are implicit, so that a function can simply return what it has.
  Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : m_state(std::in_place_index<1>, std::move(error)) {}

  explicit operator bool() const { return m_state.index() == 0; }

  T& operator*() & { return value(); }
  const T& operator*() const& { return value(); }
  T&& operator*() && { return std::move(value()); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }

  const Error& error() const& {
    assert(!*this);
    return *std::get_if<1>(&m_state);
  }
  Error&& error() && {
    assert(!*this);
    return std::move(*std::get_if<1>(&m_state));
  }

 private:
  T& value() {
    assert(*this);
    return *std::get_if<0>(&m_state);
  }
  const T& value() const {
    assert(*this);
    return *std::get_if<0>(&m_state);
  }

  std::variant<T, Error> m_state;
};

/// Success, or the error.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Error error) : m_error(std::move(error)) {}

  explicit operator bool() const { return !m_error; }
  const Error& error() const {
    assert(m_error);
    return *m_error;
  }

 private:
  std::optional<Error> m_error;
};

}  // namespace mirvel
