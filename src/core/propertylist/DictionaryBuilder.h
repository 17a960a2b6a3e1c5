#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "core/propertylist/Value.h"

namespace mirvel::plist {

/// A key as it was read, and where.
struct ReadKey {
  std::string_view text;
  std::size_t offset;
};

/// Which entry stays when a key is repeated.
enum class Repeated { FirstWins, LastWins };

/// Puts the entries of a dictionary, as they were read, into their order. Keeps its working memory between calls.
class DictionaryBuilder {
 public:
  explicit DictionaryBuilder(Repeated repeated) : m_repeated(repeated) {}

  /// Moves the values out. Both spans are equally long.
  Dictionary build(std::span<const ReadKey> keys, std::span<Value> values);
  /// The keys of the latest dictionary that were there before.
  const std::vector<ReadKey>& repeatedKeys() const { return m_repeatedKeys; }

 private:
  struct Ranked {
    std::uint64_t prefix;  ///< the first eight bytes, so that one comparison tells most keys apart
    std::size_t index;
  };

  void rank(std::span<const ReadKey> keys);
  void dropRepeated(std::span<const ReadKey> keys);

  Repeated m_repeated;
  std::vector<Ranked> m_order;
  std::vector<ReadKey> m_repeatedKeys;
};

}  // namespace mirvel::plist
