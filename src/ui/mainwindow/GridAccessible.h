#pragma once

namespace mirvel::ui {

/// Makes every `GridView` accessible as a list of its items. Further calls have no effect.
void installGridAccessible();

}  // namespace mirvel::ui
