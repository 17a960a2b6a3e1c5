#pragma once

#include "core/jobfile/Plist.h"
#include "core/lint/Findings.h"
#include "ctl/Json.h"

namespace mirvel::ctl {

/// An object with `label`, `run`, `iconPath` (null if none), `scheduled` and `unknownKeys`. Each rule has its `kind`
/// and the fields of that kind, with numbers as in `Scheduled` and times as "HH:MM".
Json jobObject(const jobfile::Plist& job);

/// An object with `severity`, `message`, `line` and `column`, and with `offset` and `key` if known.
Json findingObject(const lint::Finding& finding);

}  // namespace mirvel::ctl
