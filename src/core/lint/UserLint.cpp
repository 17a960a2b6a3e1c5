#include "core/lint/UserLint.h"

#include <algorithm>
#include <string>

namespace mirvel::lint {

namespace {

/// The name "System" stands for the domain of the daemons.
bool isForSystem(const jobfile::Plist& record) {
  const auto& types = record.limitLoadToSessionType->types;
  return std::find(types.begin(), types.end(), "System") != types.end();
}

void checkKind(const Subject& subject, Findings& findings) {
  const jobfile::Plist& record = subject.record;
  if (!subject.kind || !subject.kind->isLaunchd()) return;
  if (subject.kind->isDaemon()) {
    const std::string key = "LimitLoadToSessionType";
    if (!record.limitLoadToSessionType || isForSystem(record)) return;
    return findings.keyWarning(key, clause("only agents belong to sessions; launchd ignores %@ here", {key}),
                               Fix::remove({key}));
  }
  for (const std::string key : {"UserName", "GroupName", "InitGroups"}) {
    if (!subject.file.find(key)) continue;
    findings.keyWarning(key, clause("only daemons can set %@; launchd ignores it here", {key}), Fix::remove({key}));
  }
}

}  // namespace

void checkUsers(const Subject& subject, const TargetMachine& machine, Findings& findings) {
  checkKind(subject, findings);
  if (subject.kind && !subject.kind->isDaemon()) return;
  const auto& user = subject.record.userName;
  const auto& group = subject.record.groupName;
  if (user && machine.lacksUser(*user)) {
    findings.warning("UserName", clause("there is no user %@ on this machine", {*user}));
  }
  if (group && machine.lacksGroup(*group)) {
    findings.warning("GroupName", clause("there is no group %@ on this machine", {*group}));
  }
}

}  // namespace mirvel::lint
