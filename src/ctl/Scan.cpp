#include "ctl/Scan.h"

#include <sstream>

#include "core/loginitems/PlatformLoginItems.h"
#include "core/scan/FetchOperation.h"
#include "core/session/Foundation.h"
#include "ctl/ErrorConsole.h"

namespace mirvel::ctl {

Jobs scan(bool alsoSystem, const Context& context) {
  const Machine& machine = context.machine;
  const Foundation foundation(machine.roots, machine.environment, {}, context.localize.locale(),
                              Defaults::Damaged::Leave);
  ScanSettings settings = foundation.scanSettings();
  settings.showSystemJobs = settings.showSystemJobs || alsoSystem;
  settings.folders.clear();  // nothing is loaded from them, and a label must name one job

  const auto loginItems = loginItemsOfThisMachine(machine.roots, machine.environment, machine.runner,
                                                  foundation.commands, context.localize.locale());
  const EmbeddedList embeddedList(machine.runner, foundation.commands.launchctl);
  ErrorConsole console(context.err);
  ScanTools tools{
      .collator = foundation.collator, .loginItems = *loginItems, .embeddedList = embeddedList, .console = console};
  FetchOperation operation({}, std::move(settings), tools);
  operation.main();
  return operation.jobs ? *std::move(operation.jobs) : Jobs();
}

Jobs jobsWith(const std::string& label, const Context& context) {
  std::ostringstream unread;
  Jobs jobs = scan(true, {.in = context.in,
                          .out = context.out,
                          .err = unread,
                          .localize = context.localize,
                          .targetMachine = context.targetMachine,
                          .machine = context.machine});
  std::erase_if(jobs, [&](const auto& job) { return !job->kind.isLaunchd() || job->name != label; });
  return jobs;
}

}  // namespace mirvel::ctl
