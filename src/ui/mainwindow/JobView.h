#pragma once

#include <QAbstractItemView>
#include <functional>

namespace mirvel::ui {

/// What all views of jobs have in common: one job can be marked, none edited, and its file dragged out.
void prepareJobView(QAbstractItemView& view);

/// Gives the view a selection that moves to another row only if it may. `didChange` gets the row that is marked then.
void guardSelection(QAbstractItemView& view, std::function<bool()> mayChange, std::function<void(int row)> didChange);

}  // namespace mirvel::ui
