#include "core/catalogue/JobFile.h"

#include "core/propertylist/Encoding.h"

namespace mirvel {

namespace {

SharedText textOf(std::string_view bytes, const std::shared_ptr<const propertylist::Document>& list) {
  if (!propertylist::isUtf8(bytes)) return {};
  // Shares the text with the document where that kept it, instead of copying the file.
  if (const auto source = list->source()) return {list, *source};
  return std::string(bytes);
}

Checksum checksumOf(std::string_view bytes, const std::shared_ptr<const propertylist::Document>& list) {
  return list->source() ? Checksum(list) : Checksum::ofFile(bytes);
}

}  // namespace

std::optional<JobFile> JobFile::read(std::string_view bytes, const URL& url, Console& console) {
  auto document = propertylist::read(bytes);
  if (!document) {
    logInvalidFile(document.error(), url, console);
    return std::nullopt;
  }
  auto list = std::make_shared<const propertylist::Document>(*std::move(document));
  SharedText text = textOf(bytes, list);
  Checksum checksum = checksumOf(bytes, list);
  return JobFile{.text = std::move(text), .checksum = std::move(checksum), .list = std::move(list)};
}

void logInvalidFile(const Error& error, const URL& url, Console& console) {
  console.print("Error in: " + url.text() + '\n' + error.text());
}

}  // namespace mirvel
