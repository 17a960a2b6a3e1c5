#pragma once

namespace mirvel {

class Program;

/// Asks where to, and writes the selected launchd job there as a job file. Tells the user if that fails.
void exportJob(Program& program);

}  // namespace mirvel
