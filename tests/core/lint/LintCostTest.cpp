#include <gtest/gtest.h>

#include <string>

#include "core/lint/CountedAllocations.h"
#include "core/lint/Findings.h"
#include "core/lint/Lint.h"
#include "support/HostileFiles.h"

namespace mirvel::lint {
namespace {

/// Counts every allocated byte, freed or not: recreating the path of a value for each value would cost time rather than
/// memory, and still shows here.
TEST(LintCostTest, HostileFilesCostInProportionToTheirSize) {
  constexpr std::size_t bytesPerByte = 100;
  constexpr std::size_t small = 100'000;
  for (const auto& [name, make] : hostileFiles) {
    for (const std::size_t size : {small, 4 * small}) {
      const std::string file = make(size);
      ASSERT_GE(file.size(), size / 2) << name;
      const std::size_t before = testdata::allocatedBytes();
      const auto findings = lint(file, {});
      EXPECT_LT((testdata::allocatedBytes() - before) / file.size(), bytesPerByte)
          << name << ", " << file.size() << " bytes";
      EXPECT_LE(findings.size(), 2 * (Findings::maxPerSeverity + 1)) << name;
      std::size_t text = 0;
      for (const Finding& finding : findings) text += finding.text().size();
      EXPECT_LE(text, findings.size() * (2 * Findings::maxTextSize + 100)) << name;
    }
  }
}

}  // namespace
}  // namespace mirvel::lint
