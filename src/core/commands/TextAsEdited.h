#pragma once

#include <string>

namespace mirvel {

namespace jobfile {
class Plist;
}

/// Splits the edited command of a record into what the job runs. A command that wasn't edited keeps the keys that it
/// has in the file.
void takeArgumentsFromRun(jobfile::Plist& record);

/// The text of a job file as a save would write it, without the questions that a save may ask: the command as it was
/// edited. Empty if the record can't be written.
std::string textAsEdited(const jobfile::Plist& record);

}  // namespace mirvel
