#include <array>
#include <cstdint>
#include <utility>

#include "core/plist/PlistKeys.h"
#include "core/plist/RunString.h"
#include "core/propertylist/Reader.h"

namespace mirvel::launchd {

namespace {

using K = Plist::CodingKeys;

constexpr std::size_t keyCount = std::tuple_size_v<decltype(plistKeys)>;

/// The known keys for looking up, hashed: a file has many keys, and each is looked for.
class KnownKeys {
 public:
  constexpr KnownKeys() {
    for (std::size_t row = 0; row < keyCount; ++row) {
      std::size_t slot = slotOf(m_texts[row]);
      while (m_rows[slot] != none) slot = next(slot);
      m_rows[slot] = static_cast<std::uint8_t>(row);
    }
  }

  std::optional<std::size_t> find(std::string_view key) const {
    if (key.empty()) return std::nullopt;
    for (std::size_t slot = slotOf(key); m_rows[slot] != none; slot = next(slot)) {
      if (m_texts[m_rows[slot]] == key) return m_rows[slot];
    }
    return std::nullopt;
  }

 private:
  static constexpr std::size_t slots = 256;
  static constexpr std::uint8_t none = 255;
  static_assert(keyCount < slots / 2);

  static constexpr std::size_t slotOf(std::string_view key) {
    const auto letter = [key](std::size_t i) { return static_cast<std::size_t>(static_cast<unsigned char>(key[i])); };
    // The factors are such that no two known keys share a slot.
    return (key.size() + letter(0) + 15 * letter(key.size() / 2) + 25 * letter(key.size() - 1)) % slots;
  }
  static constexpr std::size_t next(std::size_t slot) { return (slot + 1) % slots; }

  std::array<std::string_view, keyCount> m_texts = textsOf(plistKeys);
  std::array<std::uint8_t, slots> m_rows = [] {
    std::array<std::uint8_t, slots> rows{};
    rows.fill(none);
    return rows;
  }();
};

constexpr KnownKeys knownKeys;

class PlistDecoder {
 public:
  PlistDecoder(const plist::Node& file, Plist& plist) : m_plist(plist) {
    for (const auto& member : membersOf(file, m_top)) {
      if (const auto row = knownKeys.find(member.key())) {
        m_found[*row] = &member.value;
      } else {
        noteUnknown(member.key());
      }
    }
  }

  void decode() {
    const auto decodeRow = [this](const auto& row) {
      decodeField(find(row.key), m_top.key(row.text), m_plist.*row.field);
      if (row.key == K::keepAlive) applyOnDemand();
    };
    std::apply([&](const auto&... row) { (decodeRow(row), ...); }, plistKeys);

    auto command = makeRunString(m_plist.program, m_plist.programArguments);
    m_plist.run = std::move(command.run);
    m_plist.iconPath = std::move(command.iconPath);
    m_plist.scheduled = Scheduled::rules(m_plist.startInterval, m_plist.startCalendarInterval);
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
  Plist& m_plist;
};

}  // namespace

Result<Plist> Plist::decode(const plist::Node& file) {
  Plist plist;
  if (auto result = decode(file, plist); !result) return result.error();
  return plist;
}

Result<void> Plist::decode(const plist::Node& file, Plist& fresh) {
  try {
    PlistDecoder(file, fresh).decode();
    return {};
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
