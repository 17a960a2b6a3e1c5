#include "core/support/ExecTexts.h"

namespace mirvel {

std::vector<char*> execPointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> execVariables(const Environment& environment) {
  std::vector<std::string> result;
  result.reserve(environment.size());
  for (const auto& [name, value] : environment) result.push_back(name + '=' + value);
  return result;
}

}  // namespace mirvel
