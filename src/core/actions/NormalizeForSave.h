#pragma once

namespace mirvel {

class CommandRepairs;

namespace jobfile {
class Plist;
}

/// Makes a record ready to be saved: an empty label is taken from the command as it was typed, and an edited command is
/// repaired, turned into a script if it is too complex for launchd and the user wants that, and split. False if the
/// user cancelled; the record is unchanged then.
[[nodiscard]] bool normalizeForSave(jobfile::Plist& record, CommandRepairs& repairs);

}  // namespace mirvel
