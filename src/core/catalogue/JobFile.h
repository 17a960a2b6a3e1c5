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

/// The parsed contents of a job file. Copies share the data.
struct JobFile {
  SharedText text;                                     ///< the bytes if they are UTF-8, else empty
  std::string checksum;                                ///< base64 of the SHA-256 digest of the bytes
  std::shared_ptr<const propertylist::Document> list;  ///< never null

  /// Null if the bytes aren't a property list, which is logged to the console, or if hashing fails. Thread-safe.
  static std::optional<JobFile> read(std::string_view bytes, const URL& url, Console& console);
  /// The checksum of these bytes; empty if hashing fails.
  static std::string checksumOf(std::string_view bytes);
};

/// Logs why a file isn't a job.
void logInvalidFile(const Error& error, const URL& url, Console& console);

}  // namespace mirvel
