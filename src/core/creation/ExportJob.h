#pragma once

namespace mirvel {

class Interface;
class Selection;
struct Roots;

/// Asks where to, and writes the selected launchd job there as a job file. Tells the user if that fails.
void exportJob(const Selection& selection, const Roots& roots, Interface& interface);

}  // namespace mirvel
