#include "ctl/Scan.h"

#include <ostream>

#include "core/loginitems/PlatformLoginItems.h"
#include "core/scan/FetchOperation.h"
#include "core/session/Foundation.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {

namespace {

/// Sends the scan's messages to the error output, apart from the list.
class ErrorConsole final : public Console {
 public:
  explicit ErrorConsole(std::ostream& err) : m_err(err) {}

  void print(const std::string& line) override { m_err << printable(line, LineFeeds::Keep) << '\n'; }
  void log(const std::string& line) override { print(line); }

 private:
  std::ostream& m_err;
};

}  // namespace

Jobs scan(bool alsoSystem, const Context& context) {
  const Machine& machine = context.machine;
  const Foundation foundation(machine.roots, machine.environment, {}, context.localize.locale(),
                              Defaults::Damaged::Leave);
  ScanSettings settings = foundation.scanSettings();
  settings.showSystemJobs = settings.showSystemJobs || alsoSystem;

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

}  // namespace mirvel::ctl
