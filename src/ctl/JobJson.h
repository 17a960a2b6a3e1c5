#pragma once

#include "core/jobfile/Plist.h"
#include "core/lint/Findings.h"
#include "ctl/Json.h"

namespace mirvel::ctl {

/// `label`, `run`, `iconPath` (null: none), `scheduled` and `unknownKeys`. Each rule has its `kind` and its own fields,
/// with numbers as in `Scheduled` and the time as "HH:MM".
Json jobObject(const jobfile::Plist& job);

/// `severity`, `message`, `line` and `column`, and of `offset` and `key` what is known.
Json findingObject(const lint::Finding& finding);

}  // namespace mirvel::ctl
