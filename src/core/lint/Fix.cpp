#include "core/lint/Fix.h"

#include <charconv>
#include <span>
#include <utility>

namespace mirvel::lint {

namespace {

using jobfile::OpaqueValue;
using propertylist::Value;

/// The index in a step such as "[2]".
std::optional<std::size_t> indexIn(std::string_view step) {
  if (!step.starts_with('[') || !step.ends_with(']')) return std::nullopt;
  std::size_t index = 0;
  const char* const end = step.data() + step.size() - 1;
  const auto parsed = std::from_chars(step.data() + 1, end, index);
  return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(index) : std::nullopt;
}

Value* child(Value& parent, const std::string& step) {
  if (auto* const dictionary = parent.as<propertylist::Dictionary>()) return dictionary->find(step);
  auto* const array = parent.as<propertylist::Array>();
  const auto index = indexIn(step);
  return array && index && *index < array->size() ? &(*array)[*index] : nullptr;
}

Value* containerAt(Value& root, std::span<const std::string> path) {
  Value* at = &root;
  for (const std::string& step : path) at = at ? child(*at, step) : nullptr;
  return at;
}

/// Changes the value of `step` in `parent`; returns false if that isn't possible.
class Change {
 public:
  Change(Value& parent, const std::string& step) : m_parent(parent), m_step(step) {}

  bool operator()(const Fix::Remove&) {
    if (auto* const dictionary = m_parent.as<propertylist::Dictionary>()) return dictionary->remove(m_step);
    auto* const array = m_parent.as<propertylist::Array>();
    const auto index = indexIn(m_step);
    if (!array || !index || *index >= array->size()) return false;
    array->erase(array->begin() + static_cast<std::ptrdiff_t>(*index));
    return true;
  }
  bool operator()(const Fix::Rename& change) {
    auto* const dictionary = m_parent.as<propertylist::Dictionary>();
    Value* const value = dictionary ? dictionary->find(m_step) : nullptr;
    if (!value || dictionary->find(change.to)) return false;
    Value moved = std::move(*value);
    dictionary->remove(m_step);
    dictionary->set(change.to, std::move(moved));
    return true;
  }
  bool operator()(const Fix::Replace& change) {
    Value* const value = child(m_parent, m_step);
    if (!value || *value != change.from) return false;
    *value = change.to;
    return true;
  }

 private:
  Value& m_parent;
  const std::string& m_step;
};

}  // namespace

Fix Fix::remove(OpaqueValue::Path path) {
  return {.title = clause("Remove"), .path = std::move(path), .change = Remove{}};
}

Fix Fix::rename(OpaqueValue::Path path, std::string to) {
  return {.title = clause("Use “%@”", {to}), .path = std::move(path), .change = Rename{std::move(to)}};
}

Fix Fix::replace(OpaqueValue::Path path, Value from, Value to, std::string shown) {
  return {.title = clause("Use “%@”", {std::move(shown)}),
          .path = std::move(path),
          .change = Replace{.from = std::move(from), .to = std::move(to)}};
}

std::optional<propertylist::Dictionary> mended(const propertylist::Dictionary& file, const Fix& fix) {
  if (fix.path.empty()) return std::nullopt;
  Value root = file;
  Value* const parent = containerAt(root, std::span(fix.path).first(fix.path.size() - 1));
  if (!parent || !std::visit(Change(*parent, fix.path.back()), fix.change)) return std::nullopt;
  return std::move(*root.as<propertylist::Dictionary>());
}

}  // namespace mirvel::lint
