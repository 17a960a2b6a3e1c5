#include <algorithm>
#include <ostream>

#include "core/base/Const.h"
#include "core/catalogue/KindTexts.h"
#include "core/process/Arguments.h"
#include "ctl/Json.h"
#include "ctl/Printable.h"
#include "ctl/Scan.h"
#include "ctl/Style.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

/// An item of the user's own login items has no file; it is identified by what it starts.
std::string pathOf(const Job& job) {
  return job.url.isFile() ? job.url.text() : job.run();
}

/// Only launchd jobs can be edited, whatever else the application offers for other kinds.
bool isEditable(const Job& job) {
  return job.kind.isLaunchd() && job.isEditable;
}

void writeJson(const Jobs& jobs, const Context& context) {
  Json json = Json::array();
  for (const auto& job : jobs) {
    json.push_back({{"kind", job->kind.name()},
                    {"name", job->name},
                    {"summary", job->summary},
                    {"path", pathOf(*job)},
                    {"editable", isEditable(*job)},
                    {"disabled", job->isDisabled()}});
  }
  context.out << text(json) << '\n';
}

/// Column widths, shared by all groups so that the whole list is aligned.
struct Columns {
  std::size_t name = 0;
  std::size_t mark = 0;  ///< 0 if no job has a mark
};

Columns columnsFor(const Jobs& jobs, const std::string& mark) {
  constexpr std::size_t widestName = 48;  // a few long names must not widen the column for all
  Columns columns;
  for (const auto& job : jobs) {
    columns.name = std::max(columns.name, std::min(textWidth(printable(job->name)), widestName));
    if (job->isDisabled()) columns.mark = textWidth(mark);
  }
  return columns;
}

/// The padding between a text and the next column.
std::string gap(std::string_view text, std::size_t column) {
  const std::size_t width = textWidth(text);
  return std::string((width < column ? column - width : 0) + 2, ' ');
}

void writeLine(const Job& job, const Columns& columns, const std::string& disabled, const Context& context) {
  const std::string name = printable(job.name);
  const std::string mark = job.isDisabled() ? disabled : "";
  const std::string summary = printable(job.summary);
  context.out << "  " << name;
  if (!mark.empty() || !summary.empty()) context.out << gap(name, columns.name);
  if (!mark.empty()) context.out << coloured(mark, Colour::Yellow, context.hasColour);
  if (columns.mark > 0 && !summary.empty()) context.out << gap(mark, columns.mark);
  context.out << summary << '\n';
}

void writeGroups(const Jobs& jobs, const Context& context) {
  const KindNames names{.user = context.machine.userName(),
                        .preferences = std::string(Const::AppName::systemPreferences)};
  const std::string disabled = context.localize.disabled();
  const Columns columns = columnsFor(jobs, disabled);
  const Job* previous = nullptr;
  for (const auto& job : jobs) {
    if (!previous || previous->kind != job->kind) {
      const std::string title = printable(kindTitle(job->kind, names, context.localize));
      context.out << (previous ? "\n" : "") << bold(title, context.hasColour) << '\n';
    }
    writeLine(*job, columns, disabled, context);
    previous = job.get();
  }
}

}  // namespace

int list(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--system"}, {"--json"}});
  if (!parsed) return usageError("list", parsed.error().message, context);
  if (!parsed->operands.empty()) return usageError("list", "expected no file", context);
  const Jobs jobs = scan(parsed->has("--system"), context);
  if (parsed->has("--json")) {
    writeJson(jobs, context);
  } else if (jobs.empty()) {
    context.err << "mirvelctl list: no jobs found\n";
  } else {
    writeGroups(jobs, context);
  }
  return Success;
}

}  // namespace mirvel::ctl
