#include "helpers/jobhost/HostAutostart.h"

#include "helpers/jobhost/AutostartEntry.h"

namespace mirvel {

Result<void> HostAutostart::install() const {
  if (m_folder.empty()) return {};
  const AutostartEntry entry{.file = m_folder / fileName,
                             .name = "Mirvel job host",
                             .comment = "Runs the jobs that were made with Mirvel",
                             .command = m_command,
                             .ownArguments = "( --login)?( --detach)( --root \"[^\"]*\")?"};
  return entry.install();
}

}  // namespace mirvel
