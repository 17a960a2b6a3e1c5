#include <algorithm>
#include <set>
#include <string_view>

#include "Check.h"
#include "help/Markdown.h"

using namespace mirvel;

/// Any text is either converted, with distinct sections, or refused at one of its lines.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto guide = help::readGuide(text);
  if (!guide) {
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    FUZZ_CHECK(guide.error().line >= 1 && guide.error().line <= lines);
    return 0;
  }
  std::set<std::string> ids;
  for (const auto& heading : guide->headings) FUZZ_CHECK(ids.insert(heading.id).second);
  FUZZ_CHECK(help::pageOf(*guide).find(guide->html) != std::string::npos);
  return 0;
}
