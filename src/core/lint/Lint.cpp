#include "core/lint/Lint.h"

#include <algorithm>

#include "core/lint/CommandLint.h"
#include "core/lint/FileLint.h"
#include "core/lint/Findings.h"
#include "core/lint/KeyLint.h"
#include "core/lint/LimitLint.h"
#include "core/lint/NestedKeyLint.h"
#include "core/lint/OctalLint.h"
#include "core/lint/PathLint.h"
#include "core/lint/Prolog.h"
#include "core/lint/ScheduleLint.h"
#include "core/lint/TolerantDecoding.h"
#include "core/lint/TriggerLint.h"
#include "core/lint/UserLint.h"
#include "core/propertylist/Reader.h"

namespace mirvel::lint {

namespace {

void addWarnings(const propertylist::Document& document, Findings& findings) {
  for (const propertylist::Warning& warning : document.warnings()) {
    findings.add({.severity = Severity::Warning,
                  .line = warning.line,
                  .column = warning.column,
                  .offset = warning.offset,
                  .clause = untranslated(warning.message)});
  }
  findings.addUnreported(Severity::Warning, document.unreportedWarnings());
}

void checkJob(const propertylist::Document& document, const TargetMachine& machine, std::optional<Kind> kind,
              Findings& findings) {
  auto subject = decodeTolerantly(document.root(), findings);
  if (!subject) return;
  subject->kind = kind;
  checkKeys(*subject, findings);
  checkNestedKeys(*subject, findings);
  checkPaths(*subject, machine, findings);
  checkCommand(*subject, machine, findings);
  checkSchedule(*subject, findings);
  checkTriggers(*subject, findings);
  checkLimits(*subject, findings);
  checkOctals(*subject, findings);
  checkUsers(*subject, machine, findings);
  checkFiles(*subject, machine, findings);
}

}  // namespace

std::vector<Finding> lint(std::string_view bytes, const TargetMachine& machine, std::optional<Kind> kind) {
  propertylist::Positions positions;
  Findings findings(positions);
  const auto document = propertylist::read(bytes, &positions);
  if (!document) {
    findings.error(document.error());
    return std::move(findings).inOrder();
  }
  if (document->format() == propertylist::Format::Xml) checkProlog(bytes, findings);
  checkJob(*document, machine, kind, findings);
  // Last, so that the checks above have the first claim to the limited number of warnings.
  addWarnings(*document, findings);
  return std::move(findings).inOrder();
}

bool hasErrors(const std::vector<Finding>& findings) {
  return std::any_of(findings.begin(), findings.end(),
                     [](const Finding& finding) { return finding.severity == Severity::Error; });
}

}  // namespace mirvel::lint
