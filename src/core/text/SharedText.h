#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace mirvel {

/// A text that never changes, with what keeps it in memory. Copies share it.
class SharedText {
 public:
  SharedText() = default;
  SharedText(std::string text) : SharedText(std::make_shared<const std::string>(std::move(text))) {}
  /// A text that lies somewhere in its owner.
  SharedText(std::shared_ptr<const void> owner, std::string_view text) : m_owner(std::move(owner)), m_text(text) {}

  std::string_view view() const { return m_text; }

  friend bool operator==(const SharedText& a, std::string_view b) { return a.m_text == b; }

 private:
  explicit SharedText(const std::shared_ptr<const std::string>& text) : m_owner(text), m_text(*text) {}

  std::shared_ptr<const void> m_owner;
  std::string_view m_text;
};

}  // namespace mirvel
