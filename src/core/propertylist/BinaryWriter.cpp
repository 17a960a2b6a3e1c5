#include <bit>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/Writer.h"
#include "core/text/Ascii.h"

namespace mirvel::propertylist {

namespace {

/// The size of a number in bytes; the format has 1, 2, 4 and 8.
std::uint64_t sizeFor(std::uint64_t number) {
  if (number <= 0xFF) return 1;
  if (number <= 0xFFFF) return 2;
  return number <= 0xFFFFFFFF ? 4 : 8;
}

class BinaryWriter {
 public:
  std::string write(const Value& root) {
    number(root);
    // Breadth first: numbering a container appends its elements, which are numbered in turn. No recursion.
    for (std::size_t i = 0; i < m_objects.size(); ++i) numberElements(i);
    m_referenceSize = sizeFor(m_objects.size());
    m_out = "bplist00";
    for (const Object& object : m_objects) {
      m_offsets.push_back(m_out.size());
      writeObject(object);
    }
    writeTableAndTrailer();
    return std::move(m_out);
  }

 private:
  /// A value, or a string or key (then `value` is null and `text` is set). The references to the elements of a
  /// container are in `m_references`, starting at `first`.
  struct Object {
    const Value* value;
    std::string_view text;
    std::size_t first = 0;
    std::size_t count = 0;
  };

  std::uint64_t number(const Value& value) {
    if (const auto* text = value.as<std::string>()) return numberText(*text);
    m_objects.push_back({.value = &value, .text = {}});
    return m_objects.size() - 1;
  }

  std::uint64_t numberText(std::string_view text) {
    const auto [at, isNew] = m_texts.try_emplace(text, m_objects.size());
    if (isNew) m_objects.push_back({.value = nullptr, .text = text});
    return at->second;
  }

  void numberElements(std::size_t index) {
    const Value* value = m_objects[index].value;
    if (!value) return;
    const std::size_t first = m_references.size();
    if (const auto* dictionary = value->as<Dictionary>()) {
      for (const auto& entry : *dictionary) m_references.push_back(numberText(entry.key));
      for (const auto& entry : *dictionary) m_references.push_back(number(entry.value));
      m_objects[index].count = dictionary->size();
    } else if (const Array* elements = elementsOf(*value)) {
      for (const Value& element : *elements) m_references.push_back(number(element));
      m_objects[index].count = elements->size();
    }
    m_objects[index].first = first;
  }

  static const Array* elementsOf(const Value& value) {
    if (const auto* set = value.as<Set>()) return &set->elements;
    return value.as<Array>();
  }

  void writeObject(const Object& object) {
    if (!object.value) return writeText(object.text);
    const Value& value = *object.value;
    switch (value.type()) {
      case Type::Boolean:
        m_out += *value.as<bool>() ? '\x09' : '\x08';
        break;
      case Type::Integer:
        writeInteger(*value.as<Integer>());
        break;
      case Type::Real:
        writeMarked(0x23, std::bit_cast<std::uint64_t>(*value.as<double>()), 8);
        break;
      case Type::String:
        break;  // has no value: `number` passed it to `numberText`
      case Type::Data:
        writeCounted(0x40, value.as<Data>()->bytes.size()), m_out += value.as<Data>()->bytes;
        break;
      case Type::Date:
        writeMarked(0x33, std::bit_cast<std::uint64_t>(value.as<Date>()->seconds), 8);
        break;
      case Type::Array:
        writeContainer(0xA0, object, object.count);
        break;
      case Type::Dictionary:
        writeContainer(0xD0, object, 2 * object.count);
        break;
      case Type::Uid:
        writeUid(*value.as<Uid>());
        break;
      case Type::Set:
        writeContainer(0xC0, object, object.count);
        break;
    }
  }

  void writeBigEndian(std::uint64_t value, std::uint64_t size) {
    for (std::uint64_t i = size; i-- > 0;) m_out += static_cast<char>(value >> (8 * i) & 0xFFU);
  }

  void writeMarked(std::uint64_t marker, std::uint64_t value, std::uint64_t size) {
    writeBigEndian(marker, 1);
    writeBigEndian(value, size);
  }

  /// Numbers of fewer than 8 bytes are unsigned in this format, so negative ones take 8 and those above 2^63-1 take 16.
  void writeInteger(Integer number) {
    if (!number.isNegative() && !number.toInt64()) {
      writeMarked(0x14, 0, 8);
      writeBigEndian(number.bits(), 8);
      return;
    }
    const std::uint64_t size = number.isNegative() ? 8 : sizeFor(number.bits());
    writeMarked(0x10U | static_cast<std::uint64_t>(std::countr_zero(size)), number.bits(), size);
  }

  void writeUid(Uid uid) {
    const std::uint64_t size = sizeFor(uid.number);
    writeMarked(0x80U | (size - 1), uid.number, size);
  }

  void writeCounted(std::uint64_t marker, std::size_t count) {
    writeBigEndian(marker | (count < 15 ? count : 15), 1);
    if (count >= 15) writeInteger(Integer::fromUnsigned(count));
  }

  void writeText(std::string_view text) {
    if (Ascii::holds(text)) {
      writeCounted(0x50, text.size());
      m_out += text;
    } else {
      const std::string wide = utf16BigEndian(text);
      writeCounted(0x60, wide.size() / 2);
      m_out += wide;
    }
  }

  void writeContainer(std::uint64_t marker, const Object& object, std::size_t references) {
    writeCounted(marker, object.count);
    for (std::size_t i = 0; i < references; ++i) writeBigEndian(m_references[object.first + i], m_referenceSize);
  }

  void writeTableAndTrailer() {
    const std::uint64_t table = m_out.size();
    const std::uint64_t offsetSize = sizeFor(table);
    for (const std::uint64_t offset : m_offsets) writeBigEndian(offset, offsetSize);
    m_out.append(6, '\0');
    writeBigEndian(offsetSize, 1);
    writeBigEndian(m_referenceSize, 1);
    writeBigEndian(m_objects.size(), 8);
    writeBigEndian(0, 8);  // the root is object 0
    writeBigEndian(table, 8);
  }

  std::string m_out;
  std::vector<Object> m_objects;
  std::vector<std::uint64_t> m_references;
  std::vector<std::uint64_t> m_offsets;
  std::unordered_map<std::string_view, std::uint64_t> m_texts;
  std::uint64_t m_referenceSize = 1;
};

}  // namespace

std::string writeBinary(const Value& value) {
  return BinaryWriter().write(value);
}

}  // namespace mirvel::propertylist
