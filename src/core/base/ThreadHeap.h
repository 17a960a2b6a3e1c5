#pragma once

namespace mirvel {

/// Makes room at once for what a thread will allocate, and has the whole program keep what it frees, up to 64 MiB for
/// each heap: a catalogue that goes makes room for the next one.
///
/// With glibc the heap of any thread but the first else grows by a page at a time, each time with a system call for
/// which all threads wait that touch fresh memory.
void growHeapOfThisThread();

}  // namespace mirvel
