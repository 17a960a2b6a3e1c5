#include "core/lint/NestedKeyLint.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "core/jobfile/DecodingFailure.h"
#include "core/lint/KeyLint.h"
#include "core/lint/Suggestion.h"
#include "core/lint/Vocabulary.h"
#include "core/locale/Localize.h"

namespace mirvel::lint {

namespace {

constexpr const char* unfit = translatable("the value doesn’t fit its key");

std::optional<double> number(const propertylist::Value& value) {
  if (const auto* real = value.as<double>()) return *real;
  const auto* integer = value.as<propertylist::Integer>();
  const auto small = integer ? integer->toInt64() : std::nullopt;
  if (small) return static_cast<double>(*small);
  return std::nullopt;
}

bool isEmptyContainer(const propertylist::Value& value) {
  if (const auto* array = value.as<propertylist::Array>()) return array->empty();
  const auto* dictionary = value.as<propertylist::Dictionary>();
  return dictionary && dictionary->empty();
}

/// Compares the value of one top-level key, as read and as encoded from the record.
class Comparison {
 public:
  Comparison(std::string_view owner, Findings& findings)
      : m_owner(owner), m_nested(nestedKeysOf(owner)), m_findings(findings), m_steps{std::string(owner)} {}

  /// `depth` is the number of enclosing dictionaries.
  void compare(const propertylist::Value& before, const propertylist::Value& after, const jobfile::Place& place,
               std::size_t depth) {
    const auto* dictionary = before.as<propertylist::Dictionary>();
    const auto* array = before.as<propertylist::Array>();
    if (dictionary && after.as<propertylist::Dictionary>()) {
      compareEntries(*dictionary, *after.as<propertylist::Dictionary>(), place, depth + 1);
    } else if (array && after.as<propertylist::Array>() && array->size() == after.as<propertylist::Array>()->size()) {
      for (std::size_t i = 0; i < array->size(); ++i) {
        m_steps.push_back(propertylist::childPath({}, i));
        compare((*array)[i], (*after.as<propertylist::Array>())[i], place.index(i), depth);
        m_steps.pop_back();
      }
    } else if (!isKept(before, after)) {
      reportUnfit(place);
    }
  }

 private:
  void compareEntries(const propertylist::Dictionary& before, const propertylist::Dictionary& after,
                      const jobfile::Place& place, std::size_t depth) {
    for (const auto& [key, value] : before) {
      const jobfile::Place child = place.key(key);
      m_steps.push_back(key);
      if (const propertylist::Value* kept = after.find(key)) {
        compare(value, *kept, child, depth);
      } else {
        reportMissing(key, before, child, depth);
      }
      m_steps.pop_back();
    }
  }

  void reportUnfit(const jobfile::Place& place) {
    if (m_findings.isFull(Severity::Warning)) return m_findings.addUnreported(Severity::Warning, 1);
    m_findings.warning(place.text(), clause(unfit));
  }

  void reportMissing(const std::string& key, const propertylist::Dictionary& siblings, const jobfile::Place& place,
                     std::size_t depth) {
    if (m_findings.isFull(Severity::Warning)) return m_findings.addUnreported(Severity::Warning, 1);
    const bool isListed = m_nested && m_nested->depth == depth &&
                          std::find(m_nested->keys.begin(), m_nested->keys.end(), key) == m_nested->keys.end();
    if (isListed) {
      warnOfUnknownKey(m_steps, place.text(), suggestion(key, m_nested->keys), siblings, m_findings);
    } else {
      m_findings.keyWarning(place.text(), clause(unfit));
    }
  }

  /// A conversion isn't a loss: octal text becomes an integer, and numbers may change their type.
  bool isKept(const propertylist::Value& before, const propertylist::Value& after) const {
    if (before == after) return true;
    if (m_owner == "Umask" && before.as<std::string>()) return after.as<propertylist::Integer>() != nullptr;
    const auto wanted = number(before);
    return wanted && wanted == number(after);
  }

  std::string_view m_owner;
  const NestedKeys* m_nested;
  Findings& m_findings;
  jobfile::OpaqueValue::Path m_steps;  ///< to the value that is compared
};

}  // namespace

void checkNestedKeys(const Subject& subject, Findings& findings) {
  const propertylist::Dictionary written = subject.record.encode();
  for (const auto& [key, value] : subject.file) {
    // The contents of LaunchEvents are defined by the handler of the event.
    if (!jobfile::Plist::codingKey(key) || key == "LaunchEvents") continue;
    if (const propertylist::Value* after = written.find(key)) {
      const jobfile::Place top;
      Comparison(key, findings).compare(value, *after, top.key(key), 0);
    } else if (!isEmptyContainer(value)) {
      findings.warning(key, clause(unfit));
    }
  }
}

}  // namespace mirvel::lint
