#include <string>
#include <string_view>

#include "Check.h"
#include "core/loginitems/DesktopEntry.h"
#include "core/loginitems/DesktopLocale.h"

using namespace mirvel;

namespace {

void checkFile(std::string_view bytes) {
  const auto entry = DesktopEntry::read(bytes, "sr_Latn_RS");
  FUZZ_CHECK(!entry || bytes.find("[Desktop Entry]") != std::string_view::npos);
  if (!entry) return;
  (void)entry->isShownIn(bytes);  // must only return, whatever the result
  if (entry->onlyShowIn) {
    for (const auto& desktop : *entry->onlyShowIn) FUZZ_CHECK(!desktop.empty());
  }
}

void checkLocale(const std::string& locale) {
  const auto names = desktopLocales(locale);
  FUZZ_CHECK(names.size() <= 4);
  for (const auto& name : names) FUZZ_CHECK(name.starts_with(names.back()));
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    constexpr std::string_view meant = " \n\t\r\\";
    const auto at = meant.find(c);
    if (at == std::string_view::npos) {
      result += c;
    } else {
      result.append("\\") += std::string_view("sntr\\")[at];
    }
  }
  return result;
}

/// Quotes an argument for `Exec`: in double quotes, with a backslash before four characters, and with doubled percent
/// signs.
std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (std::string_view("\"`$\\").find(c) != std::string_view::npos) result += '\\';
    result.append(c == '%' ? "%%" : std::string(1, c));
  }
  return result + '"';
}

/// A file that follows the standard is read as it was written.
void checkWritten(std::string_view text) {
  const std::string file = "[Desktop Entry]\nName[sr@latin]=" + escaped(text) + "\nIcon=" + escaped(text) +
                           "\nExec=" + escaped(quoted(text) + " %U " + quoted("-x")) + '\n';
  const auto entry = DesktopEntry::read(file, "sr_Latn_RS");
  FUZZ_CHECK(entry ? entry->name == text && entry->icon == text : file.size() > DesktopEntry::largestFile);
  if (!entry) return;
  FUZZ_CHECK(entry->command.size() == 2);
  FUZZ_CHECK(entry->command[0] == text && entry->command[1] == "-x");
}

}  // namespace

/// Any input is read as a desktop entry or refused, and text of any kind survives in a correctly written entry.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  checkFile(input);
  checkFile("[Desktop Entry]\n" + std::string(input));
  checkLocale(std::string(input));
  checkWritten(input);
  return 0;
}
