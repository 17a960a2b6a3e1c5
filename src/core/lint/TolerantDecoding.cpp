#include "core/lint/TolerantDecoding.h"

#include <string>
#include <utility>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::lint {

namespace {

using launchd::Plist;

std::string topLevelKey(const Error& error) {
  return error.keyPath.substr(0, error.keyPath.find_first_of(".["));
}

/// Takes out what was refused; false if that changes nothing.
bool mend(plist::Dictionary& file, const std::string& key) {
  const bool wasThere = file.remove(key);
  const bool isLabel = key == Plist::text(Plist::CodingKeys::name);
  if (isLabel) file.set(key, "label");
  return wasThere || isLabel;
}

Result<Plist> decodeAgain(const plist::Dictionary& file) {
  const auto document = plist::read(plist::writeBinary(file));
  if (!document) return document.error();
  return Plist::decode(document->root());
}

}  // namespace

std::optional<Subject> decodeTolerantly(const plist::Node& root, Findings& findings) {
  auto record = Plist::decode(root);
  const plist::Value whole = plist::valueOf(root);
  const auto* dictionary = whole.as<plist::Dictionary>();
  if (!dictionary) {
    findings.error(record.error());
    return std::nullopt;
  }
  plist::Dictionary file = *dictionary;
  std::set<std::string, std::less<>> refusedKeys;
  while (!record) {
    findings.error(record.error());
    const std::string key = topLevelKey(record.error());
    if (!mend(file, key)) return std::nullopt;
    refusedKeys.insert(key);
    record = decodeAgain(file);
  }
  return Subject{.file = std::move(file), .record = std::move(*record), .refusedKeys = std::move(refusedKeys)};
}

}  // namespace mirvel::lint
