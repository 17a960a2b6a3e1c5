#include <string_view>

#include "Check.h"
#include "core/catalogue/Launchd.h"

using namespace mirvel;

/// What decodes is written and decoded again, as the same record.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto record = Launchd::Plist::read({reinterpret_cast<const char*>(data), size});
  if (!record) return 0;
  const Launchd job(std::make_unique<Launchd::Plist>(*std::move(record)));
  const auto file = job.plistData();
  if (!file) return 0;  // an unknown key holds a set

  auto again = Launchd::Plist::read(*file);
  FUZZ_CHECK(again);
  const Launchd jobAgain(std::make_unique<Launchd::Plist>(*std::move(again)));
  const auto fileAgain = jobAgain.plistData();
  FUZZ_CHECK(fileAgain && *fileAgain == *file);
  return 0;
}
