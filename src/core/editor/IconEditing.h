#pragma once

#include <memory>
#include <string>

#include "core/catalogue/Job.h"

namespace mirvel {

class Program;

/// Gives the job an icon of the user's own, as the bytes of a PNG picture, and shows it. A failure is told to the user
/// and leaves the icon that was.
void setCustomIcon(Program& program, const std::shared_ptr<Job>& job, const std::string& png);
/// Goes back to the icon that the job has by itself.
void removeCustomIcon(Program& program, const std::shared_ptr<Job>& job);

}  // namespace mirvel
