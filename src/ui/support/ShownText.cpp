#include "ui/support/ShownText.h"

#include "core/support/Strings.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

QString shownText(std::string_view text) {
  constexpr std::size_t longest = 4000;
  const auto beginning = String::firstCharacters(text, longest);
  return beginning.size() < text.size() ? qt(beginning) + QChar(0x2026) : qt(beginning);
}

}  // namespace mirvel::ui
