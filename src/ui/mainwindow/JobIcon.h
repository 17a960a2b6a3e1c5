#pragma once

#include <QIcon>
#include <optional>

#include "ui/support/IconLoader.h"

namespace mirvel::ui {

/// The icon of a job; that of any program where the job has none, or one that can't be had.
QIcon jobIcon(IconLoader& icons, const std::optional<Image>& image);

}  // namespace mirvel::ui
