#include "core/lint/KeyLint.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "core/lint/Suggestion.h"
#include "core/lint/Vocabulary.h"
#include "core/locale/Localize.h"

namespace mirvel::lint {

namespace {

using jobfile::Plist;

struct DeprecatedKey {
  std::string_view key;
  const char* format;
  bool hasNoEffect = false;
};

constexpr auto plainlyDeprecated = translatable("deprecated key");
constexpr std::array<DeprecatedKey, 12> deprecatedKeys = {{
    {"Debug", plainlyDeprecated},
    {"EnableGlobbing", translatable("deprecated key; let a shell expand the arguments")},
    {"HopefullyExitsFirst", plainlyDeprecated},
    {"HopefullyExitsLast", plainlyDeprecated},
    {"OnDemand", translatable("deprecated key; use KeepAlive")},
    {"ServiceIPC", plainlyDeprecated, true},
    {"TimeOut", plainlyDeprecated},
    {"RootDirectory", plainlyDeprecated},
    {"LimitLoadFromHosts", plainlyDeprecated},
    {"LimitLoadToHosts", plainlyDeprecated},
    {"inetdCompatibility", translatable("deprecated key; use Sockets with launch_activate_socket(3)")},
    {"KeepAlive.NetworkState", translatable("deprecated key; launchd ignores it"), true},
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

void checkUnknownKey(const std::string& key, const propertylist::Dictionary& file, Findings& findings) {
  const auto known = topLevelKeys();
  // The system's own jobs mark private keys with a leading underscore.
  if (key.starts_with('_') || std::find(known.begin(), known.end(), key) != known.end()) return;
  if (findings.isFull(Severity::Warning)) return findings.addUnreported(Severity::Warning, 1);
  const std::string_view owner = ownerOf(key);
  if (!owner.empty()) {
    findings.keyWarning(key, clause("unknown key here; it belongs in %@", {std::string(owner)}));
  } else {
    warnOfUnknownKey({key}, key, suggestion(key, known), file, findings);
  }
}

jobfile::OpaqueValue::Path stepsOf(std::string_view path) {
  const std::size_t dot = path.find('.');
  if (dot == std::string_view::npos) return {std::string(path)};
  return {std::string(path.substr(0, dot)), std::string(path.substr(dot + 1))};
}

void checkDeprecatedKeys(const propertylist::Dictionary& file, Findings& findings) {
  for (const auto& [key, format, hasNoEffect] : deprecatedKeys) {
    if (!valueAt(file, key)) continue;
    const auto fix = hasNoEffect ? std::optional(Fix::remove(stepsOf(key))) : std::nullopt;
    findings.keyWarning(std::string(key), clause(format), fix);
  }
}

/// Warns about a word that is close to a known one. Others are accepted, since versions of macOS differ.
void checkWord(const std::string& keyPath, const jobfile::OpaqueValue::Path& steps, const std::string& word,
               std::span<const std::string_view> known, Findings& findings) {
  const auto meant = suggestion(word, known);
  if (!meant) return;
  const std::string right(*meant);
  findings.warning(keyPath, clause("unknown value “%@”; did you mean %@?", {word, right}),
                   Fix::replace(steps, word, right, right));
}

void checkWords(const Plist& record, Findings& findings) {
  const std::string processType = "ProcessType";
  const std::string sessionType = "LimitLoadToSessionType";
  if (record.processType) {
    checkWord(processType, {processType}, *record.processType, jobfile::processTypes, findings);
  }
  if (!record.limitLoadToSessionType) return;
  const auto& [types, singleValue] = *record.limitLoadToSessionType;
  constexpr auto& known = jobfile::LimitLoadToSessionType::agents;
  for (std::size_t i = 0; i < types.size(); ++i) {
    const std::string path = propertylist::childPath(sessionType, i);
    if (singleValue) {
      checkWord(sessionType, {sessionType}, types[i], known, findings);
    } else {
      checkWord(path, {sessionType, propertylist::childPath({}, i)}, types[i], known, findings);
    }
  }
}

void checkVariableNames(const Plist& record, Findings& findings) {
  if (!record.environmentVariables) return;
  const std::string key = "EnvironmentVariables";
  for (const auto& [name, value] : *record.environmentVariables) {
    if (name.empty()) {
      findings.warning(key, clause("a variable has no name"));
    } else if (name.find('=') != std::string::npos) {
      findings.keyWarning(propertylist::childPath(key, name), clause("the name of a variable can’t contain “=”"));
    }
  }
}

}  // namespace

void checkKeys(const Subject& subject, Findings& findings) {
  if (subject.record.unknownKeys) {
    for (const std::string& key : *subject.record.unknownKeys) checkUnknownKey(key, subject.file, findings);
  }
  if (subject.record.name.empty()) findings.warning("Label", clause("the label is empty"));
  checkDeprecatedKeys(subject.file, findings);
  checkWords(subject.record, findings);
  checkVariableNames(subject.record, findings);
}

void warnOfUnknownKey(const jobfile::OpaqueValue::Path& steps, const std::string& keyPath,
                      std::optional<std::string_view> meant, const propertylist::Dictionary& siblings,
                      Findings& findings) {
  if (!meant) return findings.keyWarning(keyPath, clause("unknown key"));
  const std::string name(*meant);
  const auto fix = siblings.find(name) ? std::nullopt : std::optional(Fix::rename(steps, name));
  findings.keyWarning(keyPath, clause("unknown key; did you mean %@?", {name}), fix);
}

}  // namespace mirvel::lint
