#pragma once

#include <memory>
#include <string_view>

#include "core/propertylist/Reader.h"

namespace mirvel::jobfile {

/// The dictionary of a job file, as it was read. Copies share it; it never changes.
class FileDictionary {
 public:
  /// The document's root is a dictionary.
  explicit FileDictionary(propertylist::Document document)
      : m_document(std::make_shared<const propertylist::Document>(std::move(document))) {}
  explicit FileDictionary(std::shared_ptr<const propertylist::Document> document) : m_document(std::move(document)) {}

  const propertylist::Node& root() const { return m_document->root(); }
  propertylist::Members members() const { return *m_document->root().dictionary(); }
  /// Null: no such key. The node lives as long as any copy of the dictionary.
  const propertylist::Node* find(std::string_view key) const { return members().find(key); }
  propertylist::Value value() const { return m_document->value(); }

  bool operator==(const FileDictionary& other) const {
    return m_document == other.m_document || value() == other.value();
  }

 private:
  std::shared_ptr<const propertylist::Document> m_document;
};

}  // namespace mirvel::jobfile
