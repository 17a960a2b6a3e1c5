#include "core/lint/LimitLint.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace mirvel::lint {

namespace {

using Limits = jobfile::ResourceLimits;
using Limit = std::optional<std::int64_t> Limits::*;

/// In the order of the coding keys.
constexpr std::array<Limit, 9> allLimits = {
    &Limits::core,
    &Limits::cpu,
    &Limits::data,
    &Limits::fileSize,
    &Limits::memoryLock,
    &Limits::numberOfFiles,
    &Limits::numberOfProcesses,
    &Limits::residentSetSize,
    &Limits::stack,
};

std::string_view nameOf(std::size_t index) {
  return Limits::text(static_cast<Limits::CodingKeys>(index));
}

void checkEach(const char* key, const Limits& limits, Findings& findings) {
  for (std::size_t i = 0; i < allLimits.size(); ++i) {
    const auto& limit = limits.*allLimits[i];
    if (!limit) continue;
    const std::string path = propertylist::childPath(key, nameOf(i));
    if (*limit < 0) {
      findings.warning(path, clause("a limit can’t be negative"));
    } else if (*limit == 0 && allLimits[i] == &Limits::cpu) {
      findings.warning(path, clause("without processor time the job is ended at once"));
    }
  }
}

void checkOrder(const Limits& soft, const Limits& hard, Findings& findings) {
  for (std::size_t i = 0; i < allLimits.size(); ++i) {
    const auto& lower = soft.*allLimits[i];
    const auto& upper = hard.*allLimits[i];
    if (!lower || !upper || *upper < 0 || *upper >= *lower) continue;
    findings.warning(
        propertylist::childPath("HardResourceLimits", nameOf(i)),
        clause("the hard limit (%@) is below the soft limit (%@)", {std::to_string(*upper), std::to_string(*lower)}));
  }
}

void checkSeconds(const char* key, std::optional<std::int64_t> seconds, Findings& findings) {
  if (seconds && *seconds < 0) findings.warning(key, clause("a time can’t be negative"));
}

}  // namespace

void checkLimits(const Subject& subject, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  if (record.softResourceLimits) checkEach("SoftResourceLimits", *record.softResourceLimits, findings);
  if (record.hardResourceLimits) checkEach("HardResourceLimits", *record.hardResourceLimits, findings);
  if (record.softResourceLimits && record.hardResourceLimits) {
    checkOrder(*record.softResourceLimits, *record.hardResourceLimits, findings);
  }
  checkSeconds("ThrottleInterval", record.throttleInterval, findings);
  checkSeconds("ExitTimeOut", record.exitTimeOut, findings);
  if (record.exitTimeOut == 0) {
    findings.warning("ExitTimeOut", clause("with 0, the job is never killed, and stopping it can take forever"));
  }
}

}  // namespace mirvel::lint
