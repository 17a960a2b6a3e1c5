#include "core/editor/JobDetails.h"

#include <algorithm>

#include "core/app/Program.h"
#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/explain/Occasions.h"
#include "core/plist/Plist.h"
#include "core/support/Strings.h"

namespace mirvel {

namespace {

using Row = JobDetails::Row;

/// Where an entry starts that has no record to tell it.
std::string whenStarted(const Job& job, const Localize& localize) {
  if (job.kind.isLoginItem()) return localize.atLogin();
  if (job.kind.isStartupItem()) return localize.atSystemStart();
  return localize.whenAClientAsks();
}

std::vector<std::string> whenLines(const Job& job, const Localize& localize) {
  if (const auto* record = job.record()) return explain::occasions(*record, localize);
  return {whenStarted(job, localize)};
}

void add(std::vector<Row>& rows, std::string label, std::string text, Row::Style style = Row::Style::Text) {
  if (!text.empty()) rows.push_back({.label = std::move(label), .lines = {std::move(text)}, .style = style});
}

}  // namespace

JobDetails JobDetails::of(Program& program, const Job& job) {
  const Localize& localize = program.foundation.localize;
  const auto shortened = [&](const std::string& text) {
    return String::shortenHomeFolder(text, program.foundation.roots.home.native());
  };
  JobDetails details{.name = job.name,
                     .kind = program.kinds.title(job.kind),
                     .icon = job.customIcon ? job.customIcon : job.icon,
                     .status = statusImage(!job.isDisabled(), localize),
                     .rows = {}};
  if (job.summary != job.name) add(details.rows, localize.summary(), job.summary);
  add(details.rows, localize.command(), shortened(job.run()), Row::Style::Code);
  std::vector<std::string> when = whenLines(job, localize);
  std::transform(when.begin(), when.end(), when.begin(), shortened);
  details.rows.push_back({.label = localize.when(), .lines = std::move(when)});
  if (const auto* tool = dynamic_cast<const PrivilegedHelperTool*>(&job)) {
    add(details.rows, localize.identifier(), tool->identifier);
    add(details.rows, localize.clients(), tool->clients, Row::Style::Code);
  }
  if (job.url.isFile()) add(details.rows, localize.path(), shortened(job.url.text()), Row::Style::Code);
  return details;
}

}  // namespace mirvel
