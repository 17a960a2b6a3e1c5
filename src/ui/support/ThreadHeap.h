#pragma once

namespace mirvel::ui {

/// Makes room at once for what a thread will allocate. With glibc the heap of any thread but the first else grows by a
/// page at a time, each time with a system call for which all threads wait that touch fresh memory.
void growHeapOfThisThread();

}  // namespace mirvel::ui
