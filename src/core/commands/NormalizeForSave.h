#pragma once

#include <string>

namespace mirvel::jobfile {

class Plist;

/// Makes the parts of the command, as it was edited, what the job runs. A command that still is the file's keeps the
/// keys that it has there.
void takeArgumentsFromRun(Plist& record);

/// The text of a job file as a save would write it, its command as it was edited. Empty: the record has no form as one.
std::string textAsEdited(const Plist& record);

}  // namespace mirvel::jobfile
