#include "helpers/process/ProcessIdentity.h"

#include <unistd.h>

#include <limits>

#include "core/text/Digits.h"
#include "helpers/process/ProcessStatus.h"

namespace mirvel {

ProcessIdentity ProcessIdentity::ofThisProcess() {
  return of(::getpid()).value_or(ProcessIdentity{.id = ::getpid()});
}

std::optional<ProcessIdentity> ProcessIdentity::of(pid_t id) {
  const auto status = ProcessStatus::of(id);
  return status ? std::optional(ProcessIdentity{id, status->start}) : std::nullopt;
}

std::string ProcessIdentity::text() const {
  return std::to_string(id) + ':' + std::to_string(start);
}

std::optional<ProcessIdentity> ProcessIdentity::from(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto id = Decimal::toInt(text.substr(0, colon)), start = Decimal::toInt(text.substr(colon + 1));
  if (!id || !start || *id <= 0 || *id > std::numeric_limits<pid_t>::max()) return std::nullopt;
  return ProcessIdentity{static_cast<pid_t>(*id), *start};
}

}  // namespace mirvel
