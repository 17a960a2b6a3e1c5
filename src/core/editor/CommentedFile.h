#pragma once

namespace mirvel {

class Launchd;
class Program;

/// A save writes no comments. If the job's file has some, asks the user whether they may go, and keeps the bytes of the
/// file as it is in the folder `Kept Files` of the program's own stores, under the job's name and the time, for the
/// user alone. False: the user went back, or the file can't be kept, which they were told; then the job isn't to be
/// saved.
bool letCommentsGo(Program& program, const Launchd& job);

}  // namespace mirvel
