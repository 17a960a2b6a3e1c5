#include "support/Untouched.h"

#include <sstream>
#include <stdexcept>

#include "core/process/Commands.h"
#include "core/process/Environment.h"
#include "core/process/SystemProcessRunner.h"
#include "support/TestData.h"

namespace mirvel::testdata {

void Untouched::add(const std::string& name, const std::string& edited, std::string_view before,
                    std::string_view after) {
  m_cases += name + '\t' + edited + '\t' + std::to_string(before.size()) + '\t' + std::to_string(after.size()) + '\n';
  m_cases += before;
  m_cases += after;
  ++m_count;
}

std::optional<std::vector<std::string>> judged(const std::string& script, const std::string& cases) {
  const Environment environment = processEnvironment();
  const auto python = findProgram("python3", environment);
  if (!python) return std::nullopt;
  const TemporaryFolder folder;
  SystemProcessRunner processes(environment);
  const auto result = processes.run(*python, {MIRVEL_JUDGES "/" + script, folder.write("cases", cases).string()});
  if (!result) throw std::runtime_error(result.error().text());
  if (result->exitStatus != 0) throw std::runtime_error(result->complaints);
  std::vector<std::string> lines;
  std::istringstream output(result->output);
  for (std::string line; std::getline(output, line);) lines.push_back(line);
  return lines;
}

}  // namespace mirvel::testdata
