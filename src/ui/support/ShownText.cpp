#include "ui/support/ShownText.h"

#include "core/support/Strings.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

QString shownText(const std::string& text) {
  constexpr std::size_t longest = 4000;  // to lay out more would take seconds
  const auto beginning = String::firstCharacters(text, longest);
  return beginning.size() < text.size() ? qt(beginning) + QChar(0x2026) : qt(beginning);
}

}  // namespace mirvel::ui
