#pragma once

#include "core/mainwindow/ListMode.h"

namespace mirvel {

/// What the table shows of a job in a column.
ListCell listCell(Program& program, const Job& job, Column::List column);

}  // namespace mirvel
