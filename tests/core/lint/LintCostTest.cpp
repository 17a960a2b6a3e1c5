#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

#include "core/lint/Findings.h"
#include "core/lint/Lint.h"
#include "support/HostileFiles.h"

namespace {
std::atomic<std::size_t> allocatedBytes;
}

// A program of its own, since these serve all that is linked with them.
void* operator new(std::size_t size) {
  allocatedBytes += size;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace mirvel::lint {
namespace {

/// Every byte that is allocated counts, also what is freed at once: making the path of a value anew for each value
/// costs time and not memory, and shows all the same.
TEST(LintCostTest, HostileFilesCostInProportionToTheirSize) {
  constexpr std::size_t bytesPerByte = 100;
  constexpr std::size_t small = 100'000;
  for (const auto& [name, make] : hostileFiles) {
    for (const std::size_t size : {small, 4 * small}) {
      const std::string file = make(size);
      ASSERT_GE(file.size(), size / 2) << name;
      const std::size_t before = allocatedBytes;
      const auto findings = lint(file, {.exists = [](const std::string&) { return true; }});
      EXPECT_LT((allocatedBytes - before) / file.size(), bytesPerByte) << name << ", " << file.size() << " bytes";
      EXPECT_LE(findings.size(), 2 * (Findings::most + 1)) << name;
      std::size_t text = 0;
      for (const Finding& finding : findings) text += finding.text().size();
      EXPECT_LE(text, findings.size() * (2 * Findings::longestText + 100)) << name;
    }
  }
}

}  // namespace
}  // namespace mirvel::lint
