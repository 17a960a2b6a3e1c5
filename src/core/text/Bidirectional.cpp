#include "core/text/Bidirectional.h"

namespace mirvel {

namespace {

constexpr std::string_view rightToLeftMark = "\u200F";
constexpr std::string_view firstStrongIsolate = "\u2068";
constexpr std::string_view popIsolate = "\u2069";

}  // namespace

std::string bidirectionalString(const std::vector<std::string>& parts, std::string_view separator, bool isRightToLeft) {
  std::string result(isRightToLeft ? rightToLeftMark : "");
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) result.append(separator);
    if (isRightToLeft) {
      result.append(firstStrongIsolate).append(parts[i]).append(popIsolate);
    } else {
      result.append(parts[i]);
    }
  }
  return result;
}

}  // namespace mirvel
