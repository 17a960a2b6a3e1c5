#pragma once

#include <memory>
#include <string_view>

#include "core/propertylist/Reader.h"

namespace mirvel::launchd {

/// The dictionary of a job file, as it was read. Copies share it; it never changes.
class FileDictionary {
 public:
  /// The document's root is a dictionary.
  explicit FileDictionary(plist::Document document)
      : m_document(std::make_shared<const plist::Document>(std::move(document))) {}
  explicit FileDictionary(std::shared_ptr<const plist::Document> document) : m_document(std::move(document)) {}

  const plist::Node& root() const { return m_document->root(); }
  plist::Members members() const { return *m_document->root().dictionary(); }
  /// Null: no such key. The node lives as long as any copy of the dictionary.
  const plist::Node* find(std::string_view key) const { return members().find(key); }
  plist::Value value() const { return m_document->value(); }

  bool operator==(const FileDictionary& other) const {
    return m_document == other.m_document || value() == other.value();
  }

 private:
  std::shared_ptr<const plist::Document> m_document;
};

}  // namespace mirvel::launchd
