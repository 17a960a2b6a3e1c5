#pragma once

namespace mirvel::launchd {

class Plist;

/// Makes the parts of the command, as it was edited, what the job runs.
void takeArgumentsFromRun(Plist& record);

}  // namespace mirvel::launchd
