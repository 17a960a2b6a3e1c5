#pragma once

#include <functional>

namespace mirvel::testdata {

/// Runs the event loop until the condition holds. Returns false if it doesn't within a limit that is generous even on a
/// busy machine.
bool eventually(const std::function<bool()>& holds);

/// Runs the event loop until all pending events have been handled.
void settle();

}  // namespace mirvel::testdata
