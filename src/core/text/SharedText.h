#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace mirvel {

/// An immutable string with shared ownership of the memory that contains it. Copies are cheap and share it. Thread-safe
/// like a const object.
class SharedText {
 public:
  /// The empty text.
  SharedText() = default;
  SharedText(std::string text) : SharedText(std::make_shared<const std::string>(std::move(text))) {}
  /// A part of something larger, such as a string within a `propertylist::Document`: `owner` keeps it alive.
  SharedText(std::shared_ptr<const void> owner, std::string_view text) : m_owner(std::move(owner)), m_text(text) {}

  /// Valid as long as this object or a copy of it.
  std::string_view view() const { return m_text; }

  friend bool operator==(const SharedText& a, std::string_view b) { return a.m_text == b; }

 private:
  explicit SharedText(const std::shared_ptr<const std::string>& text) : m_owner(text), m_text(*text) {}

  std::shared_ptr<const void> m_owner;
  std::string_view m_text;
};

}  // namespace mirvel
