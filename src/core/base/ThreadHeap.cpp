#include "core/base/ThreadHeap.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace mirvel {

void growHeapOfThisThread() {
#ifdef __GLIBC__
  // Small enough to come from the heap, and together room for some thousand jobs.
  constexpr std::size_t pieceSize = std::size_t{100} << 10U;
  ::mallopt(M_TRIM_THRESHOLD, 64 << 20);
  std::array<void*, 80> pieces;
  for (void*& piece : pieces) piece = std::malloc(pieceSize);
  for (void* const piece : pieces) std::free(piece);
#endif
}

}  // namespace mirvel
