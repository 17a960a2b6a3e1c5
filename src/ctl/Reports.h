#pragma once

#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/messages/JobReport.h"
#include "core/ports/RunSource.h"
#include "ctl/Json.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

/// What the host of the domain has published about its jobs, without tests, sorted by label. Works without a host:
/// a process that doesn't exist any more isn't reported as running. Files that can't be read are reported on the error
/// output.
std::vector<JobReport> publishedReports(RunDomain domain, const Context& context);

/// Local time, such as "2026-03-29 03:00:59".
std::string momentText(double seconds);

/// What a run was and how it ended, for the middle of a sentence: "exited with code 1 after 2 s". `run` must have
/// ended.
std::string endText(const RunReport& run, const Localize& localize);

/// An object with `number`, `start`, `end`, `cause`, `process`, `outcome`, `code`, `failed` and `text`; null where
/// unknown. Times are seconds since 1970.
Json runObject(const RunReport& run, const Localize& localize);

}  // namespace mirvel::ctl
