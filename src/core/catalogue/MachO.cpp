#include "core/catalogue/MachO.h"

#include <cassert>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "core/catalogue/ByteSource.h"

namespace mirvel {

namespace {

/// Carries an error to the border of this file.
struct Failure {
  Error error;
};

[[noreturn]] void fail(Error::Code code, std::string message, std::optional<std::uint64_t> offset = {}) {
  throw Failure{{.code = code, .message = std::move(message), .offset = offset}};
}

/// A stretch of the source, as if it were a file of its own.
class Window {
 public:
  explicit Window(ByteSource& source) : m_source(&source), m_size(source.size()) {}

  std::string bytes(std::uint64_t offset, std::size_t count) const {
    check(offset, count);
    auto bytes = m_source->read(m_start + offset, count);
    if (!bytes) throw Failure{std::move(bytes).error()};
    return *std::move(bytes);
  }

  Window part(std::uint64_t offset, std::uint64_t size) const {
    check(offset, size);
    Window part = *this;
    part.m_start += offset;
    part.m_size = size;
    return part;
  }

 private:
  void check(std::uint64_t offset, std::uint64_t size) const {
    if (offset > m_size || size > m_size - offset) fail(Error::Code::Malformed, "the file is cut short", m_start);
  }

  ByteSource* m_source;
  std::uint64_t m_start = 0;
  std::uint64_t m_size;
};

enum class ByteOrder { Little, Big };

/// The fields of a structure, by their offsets in it, which the caller keeps within its size.
class Fields {
 public:
  Fields(std::string_view bytes, ByteOrder order) : m_bytes(bytes), m_order(order) {}

  std::size_t size() const { return m_bytes.size(); }
  std::uint32_t word(std::size_t offset) const { return static_cast<std::uint32_t>(number(offset, 4)); }
  std::uint64_t longWord(std::size_t offset) const { return number(offset, 8); }
  Fields part(std::size_t offset, std::size_t size) const { return {m_bytes.substr(offset, size), m_order}; }
  /// A name of up to 16 bytes, filled up with nulls.
  std::string_view name(std::size_t offset) const {
    const std::string_view field = m_bytes.substr(offset, 16);
    return field.substr(0, field.find('\0'));
  }

 private:
  std::uint64_t number(std::size_t offset, std::size_t width) const {
    assert(offset + width <= m_bytes.size());
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < width; ++i) {
      const std::size_t place = m_order == ByteOrder::Big ? offset + i : offset + width - 1 - i;
      number = number << 8U | static_cast<unsigned char>(m_bytes[place]);
    }
    return number;
  }

  std::string_view m_bytes;
  ByteOrder m_order;
};

/// What differs between files of 32 and of 64 bits: sizes, and offsets of the fields that are read.
struct Layout {
  std::uint32_t segmentCommand;  ///< the number of the load command
  std::size_t headerSize;
  std::size_t segmentSize;  ///< without the sections behind it
  std::size_t sectionCount;
  std::size_t sectionSize;
  std::size_t contentSize;
  std::size_t contentOffset;
  bool isWide;
};
constexpr Layout narrow{.segmentCommand = 0x01,
                        .headerSize = 28,
                        .segmentSize = 56,
                        .sectionCount = 48,
                        .sectionSize = 68,
                        .contentSize = 36,
                        .contentOffset = 40,
                        .isWide = false};
constexpr Layout wide{.segmentCommand = 0x19,
                      .headerSize = 32,
                      .segmentSize = 72,
                      .sectionCount = 64,
                      .sectionSize = 80,
                      .contentSize = 40,
                      .contentOffset = 48,
                      .isWide = true};

struct Kind {
  Layout layout;
  ByteOrder order;
};

/// The kind that the first word tells, read as a big-endian number.
Kind kindOf(std::uint32_t magic) {
  switch (magic) {
    case 0xfeedface:
      return {narrow, ByteOrder::Big};
    case 0xcefaedfe:
      return {narrow, ByteOrder::Little};
    case 0xfeedfacf:
      return {wide, ByteOrder::Big};
    case 0xcffaedfe:
      return {wide, ByteOrder::Little};
    default:
      fail(Error::Code::Malformed, "this is no Mach-O file", 0);
  }
}

std::uint32_t magicOf(const Window& file) {
  return Fields(file.bytes(0, 4), ByteOrder::Big).word(0);
}

/// Where in its slice a section's bytes lie.
struct Content {
  std::uint64_t offset;
  std::uint64_t size;
};

std::optional<Content> findInSegment(const Fields& segment, const Layout& layout) {
  if (segment.size() < layout.segmentSize) fail(Error::Code::Malformed, "a segment is cut short");
  const std::uint32_t count = segment.word(layout.sectionCount);
  if (count > (segment.size() - layout.segmentSize) / layout.sectionSize) {
    fail(Error::Code::Malformed, "a segment tells of more sections than it holds");
  }
  for (std::size_t i = 0; i < count; ++i) {
    const Fields section = segment.part(layout.segmentSize + i * layout.sectionSize, layout.sectionSize);
    if (section.name(0) != "__info_plist" || section.name(16) != "__TEXT") continue;
    return Content{.offset = section.word(layout.contentOffset),
                   .size = layout.isWide ? section.longWord(layout.contentSize) : section.word(layout.contentSize)};
  }
  return std::nullopt;
}

std::optional<Content> findContent(const Fields& commands, std::uint32_t count, const Layout& layout) {
  std::size_t at = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (commands.size() - at < 8) fail(Error::Code::Malformed, "the load commands are cut short");
    const std::uint32_t size = commands.word(at + 4);
    if (size < 8 || size > commands.size() - at) fail(Error::Code::Malformed, "a load command has an impossible size");
    if (commands.word(at) == layout.segmentCommand) {
      if (const auto content = findInSegment(commands.part(at, size), layout)) return content;
    }
    at += size;
  }
  return std::nullopt;
}

std::string sectionOf(const Window& slice) {
  const auto [layout, order] = kindOf(magicOf(slice));
  const std::string headerBytes = slice.bytes(0, layout.headerSize);
  const Fields header(headerBytes, order);
  const std::uint32_t count = header.word(16), size = header.word(20);
  if (count > MachOLimits::commands || size > MachOLimits::commandBytes) {
    fail(Error::Code::LimitExceeded, "the file has too many load commands");
  }
  const std::string commands = slice.bytes(layout.headerSize, size);
  const auto content = findContent({commands, order}, count, layout);
  if (!content) fail(Error::Code::NotFound, "the file has no embedded property list");
  if (content->size > MachOLimits::sectionBytes) {
    fail(Error::Code::LimitExceeded, "the embedded property list is too large");
  }
  return slice.bytes(content->offset, static_cast<std::size_t>(content->size));
}

constexpr std::uint32_t fatMagic = 0xcafebabe;
constexpr std::uint32_t fatMagicWide = 0xcafebabf;

/// The places of the slices in a file for several processors, whose own header is always big-endian.
std::vector<Content> slicesOf(const Window& file, bool isWide) {
  const std::uint32_t count = Fields(file.bytes(4, 4), ByteOrder::Big).word(0);
  if (count > MachOLimits::slices) fail(Error::Code::LimitExceeded, "the file has too many slices");
  const std::size_t entrySize = isWide ? 32 : 20;
  const std::string bytes = file.bytes(8, count * entrySize);
  std::vector<Content> slices;
  for (std::size_t i = 0; i < count; ++i) {
    const Fields entry = Fields(bytes, ByteOrder::Big).part(i * entrySize, entrySize);
    slices.push_back(isWide ? Content{.offset = entry.longWord(8), .size = entry.longWord(16)}
                            : Content{.offset = entry.word(8), .size = entry.word(12)});
  }
  return slices;
}

/// A slice that is of no use doesn't stand in the way of a later one. If none serves, the first one's error is told.
std::string sectionOfFirst(const std::vector<Content>& slices, const Window& file) {
  std::optional<Failure> first;
  for (const Content& slice : slices) {
    try {
      return sectionOf(file.part(slice.offset, slice.size));
    } catch (Failure& failure) {
      if (!first) first = std::move(failure);
    }
  }
  if (first) throw *std::move(first);
  fail(Error::Code::NotFound, "the file has no slices");
}

}  // namespace

Result<std::string> infoPlistSection(ByteSource& source) {
  try {
    const Window file(source);
    const std::uint32_t magic = magicOf(file);
    const bool isFat = magic == fatMagic || magic == fatMagicWide;
    return isFat ? sectionOfFirst(slicesOf(file, magic == fatMagicWide), file) : sectionOf(file);
  } catch (Failure& failure) {
    return std::move(failure.error);
  }
}

Result<std::string> infoPlistSection(const std::filesystem::path& executable) {
  auto file = FileBytes::open(executable);
  if (!file) return std::move(file).error();
  auto section = infoPlistSection(*file);
  if (section) return section;
  Error error = std::move(section).error();
  error.file = executable.string();
  return error;
}

}  // namespace mirvel
