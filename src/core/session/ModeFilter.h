#pragma once

#include <string>

#include "core/session/Mode.h"

namespace mirvel {

class Program;

/// Shows in a mode those of the jobs that hold the text, whatever its case and accents: in their text content, name or
/// path. The text is kept as the program's filter. An empty one shows all jobs, and the selected one with its details;
/// any other leaves nothing marked.
void modeFilter(Program& program, ModeType& mode, const Jobs& jobs, const std::string& text);

/// The jobs that hold the text, in their order.
Jobs filtered(const Jobs& jobs, const std::string& text);

}  // namespace mirvel
