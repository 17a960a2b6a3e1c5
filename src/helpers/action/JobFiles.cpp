#include "helpers/action/JobFiles.h"

#include <sys/stat.h>

#include "core/catalogue/JobFolder.h"
#include "core/propertylist/Reader.h"

namespace mirvel {

Result<std::string> labelOf(std::string_view content) {
  if (content.size() > JobFolder::largestFile) {
    return Error{.code = Error::Code::LimitExceeded, .message = "it is too large for a job file"};
  }
  const auto document = plist::read(content);
  if (!document) return document.error();
  const plist::Value value = document->value();
  const auto* job = value.as<plist::Dictionary>();
  if (!job) return Error{.code = Error::Code::WrongType, .message = "it is no dictionary, as a job file must be"};
  const auto* found = job->find("Label");
  const auto* label = found ? found->as<std::string>() : nullptr;
  if (!label || label->empty()) {
    return Error{.code = Error::Code::MissingKey, .message = "it has no Label, which names a job"};
  }
  return *label;
}

bool isSameEntry(const std::filesystem::path& a, const std::filesystem::path& b) {
  struct stat first {
  }, second{};
  if (::lstat(a.c_str(), &first) != 0 || ::lstat(b.c_str(), &second) != 0) return false;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace mirvel
