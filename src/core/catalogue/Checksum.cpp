#include "core/catalogue/Checksum.h"

#include "core/text/Bytes.h"

namespace mirvel {

Checksum Checksum::ofFile(std::string_view bytes) {
  const auto digest = sha256(bytes);
  return digest ? toBase64(*digest) : std::string();
}

std::string Checksum::text() const {
  return m_document ? ofFile(*m_document->source()).m_text : m_text;
}

bool Checksum::operator==(const Checksum& other) const {
  if (m_document && m_document == other.m_document) return true;
  if (m_document && other.m_document) return *m_document->source() == *other.m_document->source();
  return text() == other.text();
}

}  // namespace mirvel
