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
  return key == Plist::text(Plist::CodingKeys::name);
}

/// The file in both its forms, from which keys are taken out one by one. What stays is shared with the file as read.
class ShrinkingFile {
 public:
  ShrinkingFile(const propertylist::Members& members, propertylist::Dictionary file)
      : m_members(members.begin(), members.end()), m_file(std::move(file)) {}

  /// Takes out what was refused; false if that changes nothing. In place of a label comes another one.
  bool mend(const std::string& key) {
    const bool wasThere = m_file.remove(key);
    std::erase_if(m_members, [&](const propertylist::Member& member) { return member.key() == key; });
    if (!isLabel(key)) return wasThere;
    constexpr std::string_view standIn = "label";
    const auto name = Plist::text(Plist::CodingKeys::name);
    m_file.set(name, standIn);
    m_members.push_back({.keyNode = propertylist::Node::string(name), .value = propertylist::Node::string(standIn)});
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
  std::set<std::string, std::less<>> refusedKeys;
  while (!record) {
    findings.error(record.error());
    const std::string key = topLevelKey(record.error());
    if (!file.mend(key)) return std::nullopt;
    refusedKeys.insert(key);
    record = file.decode();
  }
  return Subject{.file = std::move(file).file(), .record = std::move(*record), .refusedKeys = std::move(refusedKeys)};
}

}  // namespace mirvel::lint
