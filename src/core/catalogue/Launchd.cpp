#include "core/catalogue/Launchd.h"

#include <cassert>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

Launchd::Launchd(std::unique_ptr<Plist> record) : m_plist(std::move(record)) {
  assert(m_plist);
}

std::optional<std::string> Launchd::plistData() const {
  auto text = plist::writeXml(m_plist->encodeAll());
  if (!text) return std::nullopt;
  return std::move(*text);
}

std::optional<plist::Dictionary> Launchd::plistDictionary() const {
  const auto data = plistData();
  if (!data) return std::nullopt;
  const auto document = plist::read(*data);
  if (!document) return std::nullopt;
  plist::Value file = document->value();
  auto* dictionary = file.as<plist::Dictionary>();
  return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

}  // namespace mirvel
