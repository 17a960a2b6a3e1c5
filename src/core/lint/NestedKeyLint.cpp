#include "core/lint/NestedKeyLint.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "core/lint/Suggestion.h"
#include "core/lint/Vocabulary.h"
#include "core/plist/Place.h"

namespace mirvel::lint {

namespace {

constexpr const char* unfit = "the value doesn't fit its key";

std::optional<double> number(const plist::Value& value) {
  if (const auto* real = value.as<double>()) return *real;
  const auto* integer = value.as<plist::Integer>();
  const auto small = integer ? integer->toInt64() : std::nullopt;
  if (small) return static_cast<double>(*small);
  return std::nullopt;
}

bool isEmptyContainer(const plist::Value& value) {
  if (const auto* array = value.as<plist::Array>()) return array->empty();
  const auto* dictionary = value.as<plist::Dictionary>();
  return dictionary && dictionary->empty();
}

/// Compares one top-level key's value.
class Comparison {
 public:
  Comparison(std::string_view owner, Findings& findings)
      : m_owner(owner), m_nested(nestedKeysOf(owner)), m_findings(findings) {}

  /// `depth` counts the dictionaries that are open.
  void compare(const plist::Value& before, const plist::Value& after, const launchd::Place& place, std::size_t depth) {
    const auto* dictionary = before.as<plist::Dictionary>();
    const auto* array = before.as<plist::Array>();
    if (dictionary && after.as<plist::Dictionary>()) {
      compareEntries(*dictionary, *after.as<plist::Dictionary>(), place, depth + 1);
    } else if (array && after.as<plist::Array>() && array->size() == after.as<plist::Array>()->size()) {
      for (std::size_t i = 0; i < array->size(); ++i) {
        compare((*array)[i], (*after.as<plist::Array>())[i], place.index(i), depth);
      }
    } else if (!isKept(before, after)) {
      tellUnfit(place);
    }
  }

 private:
  void compareEntries(const plist::Dictionary& before, const plist::Dictionary& after, const launchd::Place& place,
                      std::size_t depth) {
    for (const auto& [key, value] : before) {
      const launchd::Place child = place.key(key);
      if (const plist::Value* kept = after.find(key)) {
        compare(value, *kept, child, depth);
      } else {
        tellMissing(key, child, depth);
      }
    }
  }

  void tellUnfit(const launchd::Place& place) {
    if (m_findings.isFull(Severity::warning)) return m_findings.addUnreported(Severity::warning, 1);
    m_findings.warning(place.text(), unfit);
  }

  void tellMissing(const std::string& key, const launchd::Place& place, std::size_t depth) {
    if (m_findings.isFull(Severity::warning)) return m_findings.addUnreported(Severity::warning, 1);
    const bool isListed = m_nested && m_nested->depth == depth &&
                          std::find(m_nested->keys.begin(), m_nested->keys.end(), key) == m_nested->keys.end();
    if (isListed) {
      m_findings.keyWarning(place.text(), "unknown key" + suggestionText(key, m_nested->keys));
    } else {
      m_findings.keyWarning(place.text(), unfit);
    }
  }

  bool isKept(const plist::Value& before, const plist::Value& after) const {
    if (before == after) return true;
    if (m_owner == "Umask" && before.as<std::string>()) return after.as<plist::Integer>() != nullptr;
    const auto wanted = number(before);
    return wanted && wanted == number(after);
  }

  std::string_view m_owner;
  const NestedKeys* m_nested;
  Findings& m_findings;
};

}  // namespace

void checkNestedKeys(const Subject& subject, Findings& findings) {
  const plist::Dictionary written = subject.record.encode();
  for (const auto& [key, value] : subject.file) {
    // What an event brings is for whoever handles it.
    if (!launchd::Plist::codingKey(key) || key == "LaunchEvents") continue;
    if (const plist::Value* after = written.find(key)) {
      const launchd::Place top;
      Comparison(key, findings).compare(value, *after, top.key(key), 0);
    } else if (!isEmptyContainer(value)) {
      findings.warning(key, unfit);
    }
  }
}

}  // namespace mirvel::lint
