#include <algorithm>
#include <array>
#include <utility>

#include "core/plist/PlistKeys.h"
#include "core/plist/RunString.h"
#include "core/propertylist/Reader.h"

namespace mirvel::launchd {

namespace {

using K = Plist::CodingKeys;

constexpr std::size_t keyCount = std::tuple_size_v<decltype(plistKeys)>;

struct KnownKey {
  std::string_view text;
  std::size_t row;
};

/// Shorter first: most comparisons end at the lengths.
constexpr bool isBefore(const KnownKey& known, std::string_view text) {
  if (known.text.size() != text.size()) return known.text.size() < text.size();
  return known.text < text;
}

/// The known keys for looking up.
constexpr auto knownKeyIndex = [] {
  constexpr auto texts = textsOf(plistKeys);
  std::array<KnownKey, keyCount> index{};
  for (std::size_t row = 0; row < keyCount; ++row) index[row] = {texts[row], row};
  std::sort(index.begin(), index.end(), [](const KnownKey& a, const KnownKey& b) { return isBefore(a, b.text); });
  return index;
}();

std::optional<std::size_t> rowOf(std::string_view key) {
  const auto found = std::lower_bound(knownKeyIndex.begin(), knownKeyIndex.end(), key, isBefore);
  if (found == knownKeyIndex.end() || found->text != key) return std::nullopt;
  return found->row;
}

class PlistDecoder {
 public:
  explicit PlistDecoder(const plist::Node& file) {
    for (const auto& member : membersOf(file, m_top)) {
      if (const auto row = rowOf(member.key())) {
        m_found[*row] = &member.value;
      } else {
        noteUnknown(member.key());
      }
    }
  }

  Plist decode() && {
    const auto decodeRow = [this](const auto& row) {
      decodeField(find(row.key), m_top.key(row.text), m_plist.*row.field);
      if (row.key == K::keepAlive) applyOnDemand();
    };
    std::apply([&](const auto&... row) { (decodeRow(row), ...); }, plistKeys);

    auto command = makeRunString(m_plist.program, m_plist.programArguments);
    m_plist.run = std::move(command.run);
    m_plist.iconPath = std::move(command.iconPath);
    m_plist.scheduled = Scheduled::rules(m_plist.startInterval, m_plist.startCalendarInterval);
    return std::move(m_plist);
  }

 private:
  /// A job that isn't started on demand is always kept alive, whatever its conditions say.
  void applyOnDemand() {
    std::optional<bool> onDemand;
    decodeField(find(K::onDemand), m_top.key(Plist::text(K::onDemand)), onDemand);
    if (onDemand == false && m_plist.keepAlive) m_plist.keepAlive->bool_ = true;
  }

  void noteUnknown(std::string_view key) {
    if (!m_plist.unknownKeys) m_plist.unknownKeys.emplace();
    m_plist.unknownKeys->emplace_back(key);
  }

  const plist::Node* find(K key) const { return m_found[static_cast<std::size_t>(key)]; }

  std::array<const plist::Node*, keyCount> m_found{};
  Place m_top;
  Plist m_plist;
};

}  // namespace

Result<Plist> Plist::decode(const plist::Node& file) {
  try {
    return PlistDecoder(file).decode();
  } catch (DecodingFailure& failure) {
    return std::move(failure.error);
  }
}

Result<Plist> Plist::read(std::string_view bytes) {
  auto document = plist::read(bytes);
  if (!document) return std::move(document).error();
  auto result = decode(document->root());
  if (result) result->dictionary.emplace(*std::move(document));
  return result;
}

}  // namespace mirvel::launchd
