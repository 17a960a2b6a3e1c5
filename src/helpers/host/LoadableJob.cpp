#include "helpers/host/LoadableJob.h"

#include <unistd.h>

#include <utility>

#include "core/catalogue/JobFolder.h"
#include "core/files/FileTrust.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"

namespace mirvel::host {

namespace {

std::vector<std::string> ignoredOf(const jobfile::Plist& plist) {
  std::vector<std::string> result;
  for (const std::string& name : unservedKeys(plist))
    result.push_back("the key " + name + " isn't supported by this host");
  for (const std::string& name : unusableValues(plist)) result.push_back("the value of " + name + " can't be used");
  return result;
}

}  // namespace

// The open file is checked, and read through the same descriptor, so that it can't be replaced in between.
Result<jobfile::Plist> readJob(const std::filesystem::path& file) {
  if (!file.is_absolute()) {
    return Error{.code = Error::Code::BadArgument, .message = "the path isn't absolute", .file = file};
  }
  const auto regular = RegularFile::open(file);
  if (!regular) return regular.error();
  if (auto trusted = checkTrust(file, regular->descriptor.number(), ::geteuid()); !trusted) return trusted.error();
  const auto bytes = readFile(regular->descriptor.number(), JobFolder::largestFile, file);
  if (!bytes) return bytes.error();
  auto plist = jobfile::Plist::readTolerantly(*bytes);
  if (plist) return plist;
  Error error = plist.error();
  error.file = file;
  return error;
}

Result<LoadableJob> LoadableJob::of(const jobfile::Plist& plist, const std::filesystem::path& file) {
  const auto missing = [&](const char* message) {
    return Error{.code = Error::Code::MissingKey, .message = message, .file = file};
  };
  if (const auto safe = checkRunnable(plist, ::geteuid()); !safe) return safe.error();
  if (plist.name.empty()) return missing("the label is empty");
  LoadableJob job{.rules = JobRules::of(plist), .plan = ProcessPlan::of(plist), .ignored = ignoredOf(plist)};
  if (job.plan.program.empty()) return missing("there is neither Program nor ProgramArguments");
  return job;
}

}  // namespace mirvel::host
