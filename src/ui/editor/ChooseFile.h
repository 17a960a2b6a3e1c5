#pragma once

#include <filesystem>
#include <optional>

#include "core/ports/Interface.h"

class QWidget;

namespace mirvel {
struct Platform;
}

namespace mirvel::ui {

/// Shows an open panel for a control and returns the chosen path. Null if nothing was chosen, if the control was
/// discarded while the panel was open, because the edit would then reach another job, or, with a beep, if the path
/// isn't valid UTF-8 and so can't be in a job file.
std::optional<std::filesystem::path> chooseFile(const QWidget& control, const Platform& platform,
                                                const OpenPanel& panel);

}  // namespace mirvel::ui
