#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/files/URL.h"
#include "core/ports/Console.h"
#include "core/propertylist/Reader.h"
#include "core/text/SharedText.h"

namespace mirvel {

/// What is made of the bytes of a job file alone. Copies share it.
struct JobFile {
  SharedText text;                                     ///< the bytes, if they are text in UTF-8
  std::string checksum;                                ///< base64 of the SHA-256 digest of the bytes
  std::shared_ptr<const propertylist::Document> list;  ///< never null

  /// None if the bytes are no property list, which a line on the console tells, or have no digest. From any thread.
  static std::optional<JobFile> read(std::string_view bytes, const URL& url, Console& console);
  /// The checksum of a file with these bytes; empty if it can't be made.
  static std::string checksumOf(std::string_view bytes);
};

/// What the console says of a file that is no job.
void tellOfBadFile(const Error& error, const URL& url, Console& console);

}  // namespace mirvel
