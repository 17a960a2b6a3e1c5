#include "core/lint/TolerantDecoding.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mirvel::lint {

namespace {

using jobfile::Plist;

std::string topLevelKey(const Error& error) {
  return error.keyPath.substr(0, error.keyPath.find_first_of(".["));
}

bool isLabel(std::string_view key) {
  return key == Plist::text(Plist::CodingKeys::Name);
}

/// The file both as nodes and as a dictionary, from which rejected keys are removed one by one. Remaining values are
/// shared with the document.
class ShrinkingFile {
 public:
  ShrinkingFile(const propertylist::Members& members, propertylist::Dictionary file)
      : m_members(members.begin(), members.end()), m_file(std::move(file)) {}

  /// Removes a rejected key; returns false if that changes nothing. A label is replaced instead, since no record can be
  /// decoded without one.
  bool remove(const std::string& key) {
    const bool wasThere = m_file.remove(key);
    std::erase_if(m_members, [&](const propertylist::Member& member) { return member.key() == key; });
    if (!isLabel(key)) return wasThere;
    constexpr std::string_view substitute = "label";
    const auto name = Plist::text(Plist::CodingKeys::Name);
    m_file.set(name, substitute);
    m_members.push_back({.keyNode = propertylist::Node::string(name), .value = propertylist::Node::string(substitute)});
    return true;
  }

  Result<Plist> decode() const {
    return Plist::decode(propertylist::Node::dictionary(&m_members.data()->keyNode, m_members.size()));
  }
  propertylist::Dictionary file() && { return std::move(m_file); }

 private:
  std::vector<propertylist::Member> m_members;
  propertylist::Dictionary m_file;
};

}  // namespace

std::optional<Subject> decodeTolerantly(const propertylist::Node& root, Findings& findings) {
  auto record = Plist::decode(root);
  propertylist::Value whole = propertylist::valueOf(root);
  auto* const dictionary = whole.as<propertylist::Dictionary>();
  if (!dictionary) {
    findings.error(record.error());
    return std::nullopt;
  }
  ShrinkingFile file(*root.dictionary(), std::move(*dictionary));
  std::set<std::string, std::less<>> rejectedKeys;
  while (!record) {
    findings.error(record.error());
    const std::string key = topLevelKey(record.error());
    if (!file.remove(key)) return std::nullopt;
    rejectedKeys.insert(key);
    record = file.decode();
  }
  return Subject{.file = std::move(file).file(), .record = std::move(*record), .rejectedKeys = std::move(rejectedKeys)};
}

}  // namespace mirvel::lint
