#include <string_view>

#include "Check.h"
#include "core/locale/MessageCatalog.h"

using namespace mirvel;

/// Any input is either read as a catalogue of translations or refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto catalog = MessageCatalog::read({reinterpret_cast<const char*>(data), size});
  if (catalog) FUZZ_CHECK(!catalog->find(""));
  return 0;
}
