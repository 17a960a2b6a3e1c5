#include <optional>
#include <ostream>
#include <string>

#include "core/process/Arguments.h"
#include "ctl/Printable.h"
#include "ctl/Scan.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

using Order = messages::Control::Order;

int fail(const char* command, const std::string& problem, const Context& context) {
  context.err << "mirvelctl " << command << ": " << printable(problem) << '\n';
  return Failed;
}

/// Of several files with the same label, one at most is loaded.
int give(Order order, const char* command, const std::string& label, const Context& context) {
  Jobs jobs = jobsWith(label, context);
  if (jobs.empty()) return fail(command, "there is no job with the label " + label, context);
  std::erase_if(jobs, [](const auto& job) { return job->kind.isDaemon(); });
  if (jobs.empty()) return fail(command, label + " is a job of root; use the application", context);
  const auto host = context.machine.jobHost();
  Error last;
  for (const auto& job : jobs) {
    const auto done = host->control(job->url.path(), label, order);
    if (done) return Success;
    last = done.error();
    if (last.code != Error::Code::NotFound) break;
  }
  return fail(command, last.text(), context);
}

int control(Order order, const char* command, Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {});
  if (!parsed) return usageError(command, parsed.error().message, context);
  if (parsed->operands.size() != 1 || parsed->operands[0].empty())
    return usageError(command, "expected the label of one job", context);
  return give(order, command, parsed->operands[0], context);
}

}  // namespace

int start(Arguments arguments, const Context& context) {
  return control(Order::Start, "start", arguments, context);
}

int stop(Arguments arguments, const Context& context) {
  return control(Order::Stop, "stop", arguments, context);
}

int restart(Arguments arguments, const Context& context) {
  return control(Order::Restart, "restart", arguments, context);
}

}  // namespace mirvel::ctl
