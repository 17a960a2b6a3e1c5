#include "core/catalogue/JobFile.h"

#include "core/support/Digest.h"

namespace mirvel {

std::optional<JobFile> JobFile::read(std::string data, const URL& url, Console& console) {
  const auto digest = Data::sha256Digest(data);
  if (!digest) return std::nullopt;
  auto list = plist::read(data);
  if (!list) {
    tellOfBadFile(list.error(), url, console);
    return std::nullopt;
  }
  return JobFile{.data = std::move(data),
                 .checksum = String::toBase64(*digest),
                 .list = std::make_shared<const plist::Document>(*std::move(list))};
}

void tellOfBadFile(const Error& error, const URL& url, Console& console) {
  if (error.code == Error::Code::NoForm) {
    console.print(url.text() + ": " + error.message);
  } else {
    console.print("Error in: " + url.text() + '\n' + error.text());
  }
}

}  // namespace mirvel
