#pragma once

#include <memory>
#include <string_view>

#include "core/propertylist/Reader.h"

namespace mirvel::jobfile {

/// The root dictionary of a job file as it was read. Immutable; copies share the parsed document, so that a scan can
/// keep the whole content of thousands of files next to their records.
class FileDictionary {
 public:
  /// The root of the document must be a dictionary.
  explicit FileDictionary(propertylist::Document document)
      : m_document(std::make_shared<const propertylist::Document>(std::move(document))) {}
  explicit FileDictionary(std::shared_ptr<const propertylist::Document> document) : m_document(std::move(document)) {}

  /// Nodes and members refer to the document, and are valid while any copy of this object exists.
  const propertylist::Node& root() const { return m_document->root(); }
  propertylist::Members members() const { return *m_document->root().dictionary(); }
  /// Null if there is no such key.
  const propertylist::Node* find(std::string_view key) const { return members().find(key); }
  /// An independent, mutable copy of the whole content.
  propertylist::Value value() const { return m_document->value(); }

  /// Compares the content. Fast for copies of one object; otherwise both documents are converted.
  bool operator==(const FileDictionary& other) const {
    return m_document == other.m_document || value() == other.value();
  }

 private:
  std::shared_ptr<const propertylist::Document> m_document;
};

}  // namespace mirvel::jobfile
