#pragma once

#include <QString>
#include <QStringList>

#include "ui/app/Application.h"

namespace mirvel::demo {

/// The pages of the sheet that makes a new job, by which the demo can open it.
QStringList newPages();

/// Opens the sheet on that page, filled in as a user may have done.
void showNewPage(ui::Application& application, const QString& page);

}  // namespace mirvel::demo
