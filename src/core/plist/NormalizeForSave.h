#pragma once

namespace mirvel::launchd {

class Plist;

/// Makes the parts of the command, as it was edited, what the job runs. A command that still is the file's keeps the
/// keys that it has there.
void takeArgumentsFromRun(Plist& record);

}  // namespace mirvel::launchd
