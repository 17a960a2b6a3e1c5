#include "core/catalogue/JobFile.h"

#include "core/propertylist/Encoding.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

SharedText textOf(std::string_view bytes, const std::shared_ptr<const propertylist::Document>& list) {
  if (!propertylist::isUtf8(bytes)) return {};
  // Shares the text with the document where that kept it, instead of copying the file.
  if (const auto source = list->source()) return {list, *source};
  return std::string(bytes);
}

}  // namespace

std::optional<JobFile> JobFile::read(std::string_view bytes, const URL& url, Console& console) {
  std::string checksum = checksumOf(bytes);
  if (checksum.empty()) return std::nullopt;
  auto document = propertylist::read(bytes);
  if (!document) {
    logInvalidFile(document.error(), url, console);
    return std::nullopt;
  }
  auto list = std::make_shared<const propertylist::Document>(*std::move(document));
  SharedText text = textOf(bytes, list);
  return JobFile{.text = std::move(text), .checksum = std::move(checksum), .list = std::move(list)};
}

std::string JobFile::checksumOf(std::string_view bytes) {
  const auto digest = sha256(bytes);
  return digest ? toBase64(*digest) : std::string();
}

void logInvalidFile(const Error& error, const URL& url, Console& console) {
  console.print("Error in: " + url.text() + '\n' + error.text());
}

}  // namespace mirvel
