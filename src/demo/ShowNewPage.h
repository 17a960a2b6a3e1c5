#pragma once

#include <QString>
#include <QStringList>

#include "ui/app/Application.h"

namespace mirvel::demo {

/// The names of the pages of the sheet for new jobs, as used on the command line.
QStringList newPageNames();

/// Opens the sheet for new jobs on a page, filled in with sample data.
void showNewPage(ui::Application& application, const QString& page);

}  // namespace mirvel::demo
