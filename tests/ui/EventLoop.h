#pragma once

#include <functional>

namespace mirvel::testdata {

/// Runs the event loop until something holds. False: it doesn't within the time that even a busy machine keeps.
bool eventually(const std::function<bool()>& holds);

/// Runs the event loop until all that was under way has been handled.
void settle();

}  // namespace mirvel::testdata
