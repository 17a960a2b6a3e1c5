#include <array>
#include <bitset>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "core/jobfile/PlistKeys.h"
#include "core/jobfile/RunString.h"
#include "core/propertylist/Reader.h"

namespace mirvel::jobfile {

namespace {

using K = Plist::CodingKeys;

constexpr std::size_t keyCount = std::tuple_size_v<decltype(plistKeys)>;

/// A hash table of the known keys, built at compile time, since a scan looks up every key of every file.
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
    // Found by trial: with these factors no two known keys share a slot, so that a hit needs one comparison.
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

// Some decoders never fail, and return an empty object for a value that doesn't fit. Writing that object would destroy
// the value, so tolerant decoding treats it like a failure.
template <typename Field>
bool isUsable(const propertylist::Node& /*node*/, const Field& /*field*/) {
  return true;
}
bool isUsable(const propertylist::Node& node, const KeepAlive& /*keepAlive*/) {
  return node.type() == propertylist::Type::Boolean || node.type() == propertylist::Type::Dictionary;
}
bool isUsable(const propertylist::Node& /*node*/, const Umask& umask) {
  return umask.int_.has_value();
}
bool isUsable(const propertylist::Node& /*node*/, const LimitLoadToSessionType& sessions) {
  return !sessions.types.empty();
}
bool isUsable(const propertylist::Node& /*node*/, const StartCalendarInterval& calendar) {
  return !calendar.intervals.empty();
}

template <typename Row>
constexpr bool isRequired = std::is_same_v<decltype(std::declval<Plist&>().*std::declval<Row&>().field), std::string&>;

/// Decodes the field of a row; the node of a required one can be null. Returns false if the value doesn't fit, which
/// only a tolerant place allows; the field is then absent.
template <typename Row>
bool decodeFieldOf(const Row& row, const propertylist::Node* node, const Place& top, Plist& plist) {
  auto& field = plist.*row.field;
  decodeField(node, top.key(row.text), field);
  if constexpr (!isRequired<Row>) {
    if (top.isTolerant() && !(field.has_value() && isUsable(*node, *field))) {
      field.reset();
      return false;
    }
  }
  return true;
}

class PlistDecoder {
 public:
  PlistDecoder(const propertylist::Node& file, const Place& top, Plist& plist)
      : m_top(top), m_members(membersOf(file, m_top)), m_plist(plist) {
    for (const auto& member : m_members) {
      if (const auto row = knownKeys.find(member.key())) {
        m_found[*row] = &member.value;
      } else {
        noteUnknown(member.key());
      }
    }
  }

  void decode() {
    std::apply([this](const auto&... row) { (decodeRow(row), ...); }, plistKeys);
    if (m_unfit.any()) noteAllUnknown();

    auto command = makeRunString(m_plist.program, m_plist.programArguments);
    m_plist.run = std::move(command.run);
    m_plist.iconPath = std::move(command.iconPath);
  }

 private:
  template <typename Row>
  void decodeRow(const Row& row) {
    const propertylist::Node* const node = find(row.key);
    if (!node && !isRequired<Row>) return;
    if (!decodeFieldOf(row, node, m_top, m_plist)) m_unfit.set(static_cast<std::size_t>(row.key));
  }

  /// Collects the unknown keys again, now with those whose values don't fit, so that all are in the order of the file.
  void noteAllUnknown() {
    m_plist.unknownKeys.reset();
    for (const auto& member : m_members) {
      const auto row = knownKeys.find(member.key());
      if (!row || m_unfit.test(*row)) noteUnknown(member.key());
    }
  }

  void noteUnknown(std::string_view key) {
    if (!m_plist.unknownKeys) m_plist.unknownKeys.emplace();
    m_plist.unknownKeys->emplace_back(key);
  }

  const propertylist::Node* find(K key) const { return m_found[static_cast<std::size_t>(key)]; }

  std::array<const propertylist::Node*, keyCount> m_found{};
  const Place& m_top;
  propertylist::Members m_members;
  Plist& m_plist;
  std::bitset<keyCount> m_unfit;  ///< the known keys whose values don't fit
};

Result<void> decodeInto(Plist& fresh, const propertylist::Node& file, const Place& top) {
  try {
    PlistDecoder(file, top, fresh).decode();
    return {};
  } catch (DecodingFailure& failure) {
    return std::move(failure.error);
  }
}

}  // namespace

// A record is large, so the functions that return one construct it in the result and return only that.

Result<Plist> Plist::decode(const propertylist::Node& file) {
  Result<Plist> plist(std::in_place);
  if (auto result = decodeInto(*plist, file, Place()); !result) plist = result.error();
  return plist;
}

Result<void> Plist::decodeTolerantly(const propertylist::Node& file, Plist& fresh) {
  return decodeInto(fresh, file, Place::tolerant());
}

/// Decodes the value of one key by itself, tolerantly. Returns whether it fits; otherwise the field is absent.
bool Plist::decodeKey(CodingKeys key, const propertylist::Node& value, Plist& plist) {
  const Place top = Place::tolerant();
  bool fits = false;
  const auto decodeRow = [&](const auto& row) {
    if (row.key == key) fits = decodeFieldOf(row, &value, top, plist);
  };
  std::apply([&](const auto&... row) { (decodeRow(row), ...); }, plistKeys);
  return fits;
}

Result<Plist> Plist::readTolerantly(std::string_view bytes) {
  Result<Plist> plist(std::in_place);
  auto document = propertylist::read(bytes);
  if (!document) {
    plist = std::move(document).error();
  } else if (auto result = decodeTolerantly(document->root(), *plist); !result) {
    plist = result.error();
  } else {
    plist->dictionary.emplace(*std::move(document));
  }
  return plist;
}

}  // namespace mirvel::jobfile
