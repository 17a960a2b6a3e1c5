#pragma once

#include <QString>

#include "demo/DemoOptions.h"
#include "ui/app/Application.h"

namespace mirvel::demo {

/// Writes a picture of the window, or of the sheet before it, as soon as it shows what was asked for, and ends the
/// event loop: with 0, or with 1 and a word on the standard error.
void takePicture(ui::Application& application, const DemoOptions& options);

/// Brings the window into the state that was asked for, once the jobs are there.
void arrange(ui::Application& application, const DemoOptions& options);

}  // namespace mirvel::demo
