#include "core/mainwindow/StableSort.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <random>

namespace mirvel {
namespace {

using Pair = std::pair<int, int>;

TEST(StableSortTest, AnOrderIsFollowedAndEqualNeighboursKeepTheirs) {
  std::mt19937 random(7);
  for (std::size_t size = 0; size < 70; ++size) {
    std::vector<Pair> elements;
    for (std::size_t i = 0; i < size; ++i) elements.emplace_back(static_cast<int>(random() % 5), static_cast<int>(i));
    auto expected = elements;
    const auto byFirst = [](const Pair& a, const Pair& b) { return a.first < b.first; };
    std::stable_sort(expected.begin(), expected.end(), byFirst);
    auto strict = elements;
    stableSort(strict, byFirst);
    EXPECT_EQ(strict, expected);
    // One that also answers true for equal elements.
    stableSort(elements, [](const Pair& a, const Pair& b) { return a.first <= b.first; });
    EXPECT_EQ(elements, expected);
  }
}

TEST(StableSortTest, WhateverIsAnsweredNothingIsLost) {
  std::mt19937 random(11);
  const auto always = [](const auto&, const auto&) { return true; };
  const auto never = [](const auto&, const auto&) { return false; };
  const auto anything = [&](const auto&, const auto&) { return random() % 2 == 0; };
  const auto cyclic = [](const auto& a, const auto& b) { return (*a + 1) % 3 == *b % 3; };
  for (const std::size_t size : {0U, 1U, 2U, 3U, 5U, 64U, 65U, 1000U}) {
    std::vector<int> numbers(size);
    std::iota(numbers.begin(), numbers.end(), 0);
    const auto sorted = [&](const auto& before) {
      std::vector<std::shared_ptr<int>> elements;
      for (const int number : numbers) elements.push_back(std::make_shared<int>(number));
      stableSort(elements, before);
      std::vector<int> result;
      for (const auto& element : elements) result.push_back(element ? *element : -1);
      return result;
    };
    EXPECT_EQ(sorted(always), numbers);
    EXPECT_EQ(sorted(never), numbers);
    for (int i = 0; i < 20; ++i) {
      auto result = sorted(anything);
      std::sort(result.begin(), result.end());
      EXPECT_EQ(result, numbers);
    }
    auto result = sorted(cyclic);
    std::sort(result.begin(), result.end());
    EXPECT_EQ(result, numbers);
  }
}

}  // namespace
}  // namespace mirvel
