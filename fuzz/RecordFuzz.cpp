#include <string>
#include <string_view>

#include "Check.h"
#include "core/catalogue/Launchd.h"
#include "core/editor/InfoLaunchd.h"
#include "core/jobfile/RunString.h"
#include "core/locale/Localize.h"

using namespace mirvel;

namespace {

/// Discards messages about bad files.
class Silence final : public Console {
 public:
  void print(const std::string&) override {}
  void log(const std::string&) override {}
};

std::shared_ptr<Launchd> jobOf(std::string_view bytes) {
  Silence console;
  return Launchd::read(std::string(bytes), URL::file("/job.plist"), Kind::userAgent, {}, console);
}

/// A text that isn't refused is a record, and what it is written as isn't refused either. A refused one has its fault
/// within the text.
void checkTypedText(const std::string& text) {
  static const Localize localize("en");
  if (const auto problem = InfoLaunchd::check(text, localize)) {
    FUZZ_CHECK(problem->point.value_or(0) <= text.size());
    return;
  }
  const auto record = jobfile::Plist::readTolerantly(text);
  if (!record) return;  // it declares another encoding than UTF-8, which it isn't in
  (void)record->opaqueValues();
  const std::string written = jobfile::textAsEdited(*record);
  FUZZ_CHECK(!written.empty() && !InfoLaunchd::check(written, localize));
}

}  // namespace

/// Every job that is read can be written and read back as the same record.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkTypedText({reinterpret_cast<const char*>(data), size});
  const auto job = jobOf({reinterpret_cast<const char*>(data), size});
  if (!job) return 0;
  FUZZ_CHECK(propertylist::Value(job->plist().encodeAll()) == job->plist().dictionary->value());  // without edits
  const auto file = job->plistData();
  if (!file) return 0;  // an unknown key holds a set

  const auto again = jobOf(*file);
  FUZZ_CHECK(again);
  const auto fileAgain = again->plistData();
  FUZZ_CHECK(fileAgain && *fileAgain == *file);
  return 0;
}
