#include "demo/SampleText.h"

#include <QString>
#include <algorithm>
#include <array>

#include "core/loginitems/DesktopEntry.h"

namespace mirvel::demo {

namespace {

std::string escaped(const std::string& text, const std::filesystem::path& file) {
  if (file.extension() == ".plist") return QString::fromStdString(text).toHtmlEscaped().toStdString();
  return file.extension() == ".desktop" ? escapedForExec(text) : text;
}

struct SampleMark {
  std::string_view mark;
  std::string text;
};

}  // namespace

std::string filledIn(std::string_view text, const std::filesystem::path& file, const SampleNames& names) {
  const std::array<SampleMark, 3> placeholders{{
      {"@HOME@", escaped(names.home, file)},
      {"@ROOT@", escaped(names.root, file)},
      {"@USER@", escaped(names.user, file)},
  }};
  std::string result;
  while (!text.empty()) {
    const auto found = std::find_if(placeholders.begin(), placeholders.end(),
                                    [&](const SampleMark& each) { return text.starts_with(each.mark); });
    if (found == placeholders.end()) {
      result += text.front();
      text.remove_prefix(1);
    } else {
      result += found->text;
      text.remove_prefix(found->mark.size());
    }
  }
  return result;
}

}  // namespace mirvel::demo
