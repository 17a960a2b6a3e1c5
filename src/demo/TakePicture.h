#pragma once

#include <QString>

#include "demo/DemoOptions.h"
#include "ui/app/Application.h"

namespace mirvel::demo {

/// Writes a picture of the window, or of its sheet if one is open, once the window is arranged and the sheet has what
/// it waits for, but after some seconds at the latest. Then ends the event loop: with 0, or with 1 and a message on the
/// standard error.
void takePicture(ui::Application& application, const DemoOptions& options);

/// Puts the window into the requested state. The jobs must have been scanned, and the reports about them read.
void arrangeWindow(ui::Application& application, const DemoOptions& options);

}  // namespace mirvel::demo
