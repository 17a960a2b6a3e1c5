#include "core/lint/KeyLint.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "core/lint/Suggestion.h"
#include "core/lint/Vocabulary.h"

namespace mirvel::lint {

namespace {

using jobfile::Plist;

struct DeprecatedKey {
  std::string_view key;
  std::string_view advice;
};

constexpr std::array<DeprecatedKey, 12> deprecatedKeys = {{
    {"Debug", ""},
    {"EnableGlobbing", "; let a shell expand the arguments"},
    {"HopefullyExitsFirst", ""},
    {"HopefullyExitsLast", ""},
    {"OnDemand", "; use KeepAlive"},
    {"ServiceIPC", ""},
    {"TimeOut", ""},
    {"RootDirectory", ""},
    {"LimitLoadFromHosts", ""},
    {"LimitLoadToHosts", ""},
    {"inetdCompatibility", "; use Sockets with launch_activate_socket(3)"},
    {"KeepAlive.NetworkState", "; launchd ignores it"},
}};

const propertylist::Value* valueAt(const propertylist::Dictionary& file, std::string_view path) {
  const std::size_t dot = path.find('.');
  if (dot == std::string_view::npos) return file.find(path);
  const auto* const inner = file.get<propertylist::Dictionary>(path.substr(0, dot));
  return inner ? inner->find(path.substr(dot + 1)) : nullptr;
}

/// The top-level key whose dictionaries may contain the key; empty if there is none.
std::string_view ownerOf(std::string_view key) {
  for (const NestedKeys& nested : nestedKeys()) {
    if (std::find(nested.keys.begin(), nested.keys.end(), key) != nested.keys.end()) return nested.owner;
  }
  return {};
}

void checkUnknownKey(const std::string& key, Findings& findings) {
  const auto known = topLevelKeys();
  // The system's own jobs mark private keys with a leading underscore.
  if (key.starts_with('_') || std::find(known.begin(), known.end(), key) != known.end()) return;
  if (findings.isFull(Severity::Warning)) return findings.addUnreported(Severity::Warning, 1);
  const std::string_view owner = ownerOf(key);
  if (!owner.empty()) {
    findings.keyWarning(key, "unknown key here; it belongs in " + std::string(owner));
  } else {
    findings.keyWarning(key, "unknown key" + suggestionText(key, known));
  }
}

void checkDeprecatedKeys(const propertylist::Dictionary& file, Findings& findings) {
  for (const auto& [key, advice] : deprecatedKeys) {
    if (valueAt(file, key)) findings.keyWarning(std::string(key), "deprecated key" + std::string(advice));
  }
}

/// Warns about a word that is close to a known one. Others are accepted, since versions of macOS differ.
void checkWord(const std::string& keyPath, const std::string& word, std::span<const std::string_view> known,
               Findings& findings) {
  const std::string meant = suggestionText(word, known);
  if (!meant.empty()) findings.warning(keyPath, "unknown value \"" + word + '"' + meant);
}

void checkWords(const Plist& record, Findings& findings) {
  if (record.processType) checkWord("ProcessType", *record.processType, jobfile::processTypes, findings);
  if (!record.limitLoadToSessionType) return;
  const auto& [types, singleValue] = *record.limitLoadToSessionType;
  for (std::size_t i = 0; i < types.size(); ++i) {
    const std::string path = "LimitLoadToSessionType";
    checkWord(singleValue ? path : propertylist::childPath(path, i), types[i], jobfile::LimitLoadToSessionType::agents,
              findings);
  }
}

}  // namespace

void checkKeys(const Subject& subject, Findings& findings) {
  if (subject.record.unknownKeys) {
    for (const std::string& key : *subject.record.unknownKeys) checkUnknownKey(key, findings);
  }
  if (subject.record.name.empty()) findings.warning("Label", "the label is empty");
  checkDeprecatedKeys(subject.file, findings);
  checkWords(subject.record, findings);
}

}  // namespace mirvel::lint
