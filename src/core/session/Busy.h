#pragma once

#include <memory>
#include <utility>

#include "core/base/Signal.h"

namespace mirvel {

/// Counts operations of one kind that are in progress, such as saves. Each operation holds a token while it runs, so
/// that the end of one operation can't hide that another one is still running. For the main thread.
///
///     const Busy::Token token = saving.begin();  // isBusy() until the token is destroyed
class Busy {
  struct State {
    int count = 0;
    Signal<> changed = {};
  };

 public:
  /// An operation in progress. It ends when the token is destroyed, released or assigned to; a moved-from token is
  /// empty. Tokens may outlive the `Busy`.
  class Token {
   public:
    Token() = default;
    Token(Token&& other) noexcept : m_state(std::exchange(other.m_state, {})) {}
    Token& operator=(Token&& other) noexcept {
      const Token before(std::move(*this));
      m_state = std::exchange(other.m_state, {});
      return *this;
    }
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;
    ~Token() { release(); }

    /// Ends the operation now. Does nothing if it has ended.
    void release() {
      const auto state = std::exchange(m_state, {}).lock();
      if (state && --state->count == 0) state->changed.post();
    }

   private:
    friend class Busy;
    explicit Token(const std::shared_ptr<State>& state) : m_state(state) {}
    std::weak_ptr<State> m_state;
  };

  Busy() = default;
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

  /// Starts an operation, which runs until the token ends it.
  [[nodiscard]] Token begin() {
    Token token(m_state);
    if (++m_state->count == 1) m_state->changed.post();
    return token;
  }
  bool isBusy() const { return m_state->count > 0; }
  /// Posted when the first operation begins and when the last one ends.
  Signal<>& changed() { return m_state->changed; }

 private:
  std::shared_ptr<State> m_state = std::make_shared<State>();
};

}  // namespace mirvel
