#pragma once

#include <cassert>
#include <optional>
#include <utility>
#include <variant>

#include "core/base/Error.h"

namespace mirvel {

/// The value of an operation that can fail, or the error. Accessing the one that isn't there is a bug of the caller,
/// which assertions catch in debug builds.
///
///     Result<int> parse(std::string_view text) {
///       if (text.empty()) return Error{.code = Error::Code::Malformed, .message = "it is empty"};
///       return 1;
///     }
///     const auto number = parse(text);
///     if (!number) return number.error();
///     use(*number);
template <typename T>
class [[nodiscard]] Result {
 public:
  // Implicit, so that functions can return a value or an error directly.
  Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : m_state(std::in_place_index<1>, std::move(error)) {}
  /// Constructs the value in place, for types that are expensive to move.
  template <typename... Arguments>
  explicit Result(std::in_place_t /*tag*/, Arguments&&... arguments)
      : m_state(std::in_place_index<0>, std::forward<Arguments>(arguments)...) {}

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

/// Success, or the error. Ignoring it deliberately takes a cast to void.
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
