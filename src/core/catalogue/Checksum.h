#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "core/propertylist/Document.h"

namespace mirvel {

/// Identifies the content of a job. That of a job file is the base64 text of the SHA-256 digest of its bytes, which is
/// only computed when it is asked for: as long as the bytes are in memory, comparing them is faster. Copies share the
/// bytes. Immutable, so thread-safe.
class Checksum {
 public:
  Checksum() = default;
  /// A checksum that exists as text, of whatever makes the job what it is.
  Checksum(std::string text) : m_text(std::move(text)) {}
  Checksum(const char* text) : m_text(text) {}
  /// Of the bytes that the document was read from, which it must have kept: `source()` isn't null.
  explicit Checksum(std::shared_ptr<const propertylist::Document> document) : m_document(std::move(document)) {}

  /// Of the bytes of a job file. The text is empty if the crypto library fails.
  static Checksum ofFile(std::string_view bytes);

  std::string text() const;

  bool operator==(const Checksum& other) const;

 private:
  std::string m_text;
  std::shared_ptr<const propertylist::Document> m_document;  // null if there is a text
};

}  // namespace mirvel
