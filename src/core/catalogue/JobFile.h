#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "core/catalogue/Checksum.h"
#include "core/files/URL.h"
#include "core/ports/Console.h"
#include "core/propertylist/Reader.h"
#include "core/text/SharedText.h"

namespace mirvel {

/// The parsed contents of a job file. Copies share the data.
struct JobFile {
  SharedText text;  ///< the bytes if they are UTF-8, else empty
  Checksum checksum;
  std::shared_ptr<const propertylist::Document> list;  ///< never null

  /// Null if the bytes aren't a property list, which is logged to the console. Thread-safe.
  static std::optional<JobFile> read(std::string_view bytes, const URL& url, Console& console);
};

/// Logs why a file isn't a job.
void logInvalidFile(const Error& error, const URL& url, Console& console);

}  // namespace mirvel
