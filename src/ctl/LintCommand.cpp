#include <unistd.h>

#include <filesystem>
#include <optional>
#include <ostream>
#include <system_error>
#include <utility>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/lint/Lint.h"
#include "core/lint/PermissionLint.h"
#include "core/process/Arguments.h"
#include "ctl/Input.h"
#include "ctl/JobJson.h"
#include "ctl/Printable.h"
#include "ctl/Style.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

using lint::Finding;
using lint::Severity;

struct Verdict {
  std::string file;
  std::vector<Finding> findings = {};
};

/// The kind of job that the file is because of its folder; none in other folders.
std::optional<mirvel::Kind> kindOf(const std::string& file, const Roots& roots) {
  std::error_code failure;
  const auto folder = std::filesystem::weakly_canonical(file, failure).parent_path();
  for (const mirvel::Kind kind : mirvel::Kind::allCases) {
    const auto jobs = kind.isLaunchd() ? kind.folderURL(roots) : std::nullopt;
    if (jobs && !failure && std::filesystem::weakly_canonical(*jobs, failure) == folder) return kind;
  }
  return std::nullopt;
}

Verdict judge(const std::string& file, const Context& context) {
  const auto bytes = readInput(file, context);
  if (bytes) {
    Verdict verdict{.file = file};
    const bool isFile = file != "-";
    const auto kind = isFile ? kindOf(file, context.machine.roots) : std::nullopt;
    // launchd loads the jobs of everyone for root.
    const uid_t user = kind && *kind != mirvel::Kind::userAgent ? 0 : ::geteuid();
    if (isFile) verdict.findings = mirvel::lint::checkPermissions(file, user);
    for (Finding& finding : mirvel::lint::lint(*bytes, context.targetMachine, kind)) {
      verdict.findings.push_back(std::move(finding));
    }
    return verdict;
  }
  return {.file = file, .findings = {{.severity = Severity::Error, .message = bytes.error().message}}};
}

void writeVerdict(const Verdict& verdict, const Context& context) {
  const std::string name = printable(inputName(verdict.file));
  if (verdict.findings.empty()) context.out << name << ": " << coloured("ok", Colour::Green, context.hasColour) << '\n';
  for (const Finding& finding : verdict.findings) {
    const std::string text = printable(finding.text());
    // Only the severity at the beginning is coloured.
    const std::size_t severityEnd = text.find(':');
    const Colour colour = finding.severity == Severity::Error ? Colour::Red : Colour::Yellow;
    context.out << name << ": " << coloured(text.substr(0, severityEnd), colour, context.hasColour)
                << text.substr(severityEnd) << '\n';
  }
}

void writeSummary(const std::vector<Verdict>& verdicts, const Context& context) {
  std::size_t withErrors = 0;
  std::size_t withWarnings = 0;
  for (const Verdict& verdict : verdicts) {
    const bool hasErrors = mirvel::lint::hasErrors(verdict.findings);
    withErrors += hasErrors ? 1U : 0U;
    withWarnings += !hasErrors && !verdict.findings.empty() ? 1U : 0U;
  }
  context.out << verdicts.size() << " files: " << verdicts.size() - withErrors - withWarnings << " ok, " << withWarnings
              << " with warnings, " << withErrors << " with errors\n";
}

void writeJson(const std::vector<Verdict>& verdicts, const Context& context) {
  Json json = Json::array();
  for (const Verdict& verdict : verdicts) {
    Json findings = Json::array();
    for (const Finding& finding : verdict.findings) findings.push_back(findingObject(finding));
    json.push_back({{"file", verdict.file},
                    {"ok", !mirvel::lint::hasErrors(verdict.findings)},
                    {"findings", std::move(findings)}});
  }
  context.out << text(json) << '\n';
}

}  // namespace

int lint(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--json"}});
  if (!parsed) return usageError("lint", parsed.error().message, context);
  if (parsed->operands.empty()) return usageError("lint", "no file given", context);
  const bool asJson = parsed->has("--json");
  std::vector<Verdict> verdicts;
  for (const std::string& file : parsed->operands) {
    verdicts.push_back(judge(file, context));
    if (!asJson) writeVerdict(verdicts.back(), context);
  }
  if (asJson) {
    writeJson(verdicts, context);
  } else if (verdicts.size() > 1) {
    writeSummary(verdicts, context);
  }
  bool hasErrors = false;
  for (const Verdict& verdict : verdicts) hasErrors = hasErrors || mirvel::lint::hasErrors(verdict.findings);
  return hasErrors ? Failed : Success;
}

}  // namespace mirvel::ctl
