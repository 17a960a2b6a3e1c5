#include "core/catalogue/MachO.h"

#include <cassert>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "core/catalogue/ByteSource.h"

namespace mirvel {

namespace {

/// Carries an error to the public functions of this file.
struct Failure {
  Error error;
};

[[noreturn]] void fail(Error::Code code, std::string message, std::optional<std::uint64_t> offset = {}) {
  throw Failure{{.code = code, .message = std::move(message), .offset = offset}};
}

/// A range of the source, read as if it were a file of its own.
class ByteRange {
 public:
  explicit ByteRange(ByteSource& source) : m_source(&source), m_size(source.size()) {}

  std::string bytes(std::uint64_t offset, std::size_t count) const {
    check(offset, count);
    auto bytes = m_source->read(m_start + offset, count);
    if (!bytes) throw Failure{std::move(bytes).error()};
    return *std::move(bytes);
  }

  ByteRange part(std::uint64_t offset, std::uint64_t size) const {
    check(offset, size);
    ByteRange part = *this;
    part.m_start += offset;
    part.m_size = size;
    return part;
  }

 private:
  void check(std::uint64_t offset, std::uint64_t size) const {
    if (offset > m_size || size > m_size - offset) fail(Error::Code::Malformed, "the file is truncated", m_start);
  }

  ByteSource* m_source;
  std::uint64_t m_start = 0;
  std::uint64_t m_size;
};

enum class ByteOrder { Little, Big };

/// The fields of a structure by their offsets, which the caller must keep within its size.
class StructFields {
 public:
  StructFields(std::string_view bytes, ByteOrder order) : m_bytes(bytes), m_order(order) {}

  std::size_t size() const { return m_bytes.size(); }
  std::uint32_t word(std::size_t offset) const { return static_cast<std::uint32_t>(number(offset, 4)); }
  std::uint64_t longWord(std::size_t offset) const { return number(offset, 8); }
  StructFields part(std::size_t offset, std::size_t size) const { return {m_bytes.substr(offset, size), m_order}; }
  /// A name of up to 16 bytes, padded with nulls.
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

/// The differences between 32-bit and 64-bit files: sizes, and offsets of the fields that are read.
struct Layout {
  std::uint32_t segmentCommand;  ///< its number as a load command
  std::size_t headerSize;
  std::size_t segmentSize;  ///< without the sections that follow
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

struct FileType {
  Layout layout;
  ByteOrder order;
};

/// The file type by the first word, read as a big-endian number.
FileType fileTypeOf(std::uint32_t magic) {
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
      fail(Error::Code::Malformed, "not a Mach-O file", 0);
  }
}

std::uint32_t magicOf(const ByteRange& file) {
  return StructFields(file.bytes(0, 4), ByteOrder::Big).word(0);
}

/// A range of bytes: a section within its slice, or a slice within its file.
struct Extent {
  std::uint64_t offset;
  std::uint64_t size;
};

std::optional<Extent> findInSegment(const StructFields& segment, const Layout& layout) {
  if (segment.size() < layout.segmentSize) fail(Error::Code::Malformed, "a segment is truncated");
  const std::uint32_t count = segment.word(layout.sectionCount);
  if (count > (segment.size() - layout.segmentSize) / layout.sectionSize) {
    fail(Error::Code::Malformed, "a segment declares more sections than it contains");
  }
  for (std::size_t i = 0; i < count; ++i) {
    const StructFields section = segment.part(layout.segmentSize + i * layout.sectionSize, layout.sectionSize);
    if (section.name(0) != "__info_plist" || section.name(16) != "__TEXT") continue;
    return Extent{.offset = section.word(layout.contentOffset),
                  .size = layout.isWide ? section.longWord(layout.contentSize) : section.word(layout.contentSize)};
  }
  return std::nullopt;
}

std::optional<Extent> findExtent(const StructFields& commands, std::uint32_t count, const Layout& layout) {
  std::size_t at = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (commands.size() - at < 8) fail(Error::Code::Malformed, "the load commands are truncated");
    const std::uint32_t size = commands.word(at + 4);
    if (size < 8 || size > commands.size() - at) fail(Error::Code::Malformed, "a load command has an invalid size");
    if (commands.word(at) == layout.segmentCommand) {
      if (const auto extent = findInSegment(commands.part(at, size), layout)) return extent;
    }
    at += size;
  }
  return std::nullopt;
}

std::string sectionOf(const ByteRange& slice) {
  const auto [layout, order] = fileTypeOf(magicOf(slice));
  const std::string headerBytes = slice.bytes(0, layout.headerSize);
  const StructFields header(headerBytes, order);
  const std::uint32_t count = header.word(16), size = header.word(20);
  if (count > MachOLimits::commands || size > MachOLimits::commandBytes) {
    fail(Error::Code::LimitExceeded, "the file has too many load commands");
  }
  const std::string commands = slice.bytes(layout.headerSize, size);
  const auto extent = findExtent({commands, order}, count, layout);
  if (!extent) fail(Error::Code::NotFound, "the file has no embedded property list");
  if (extent->size > MachOLimits::sectionBytes) {
    fail(Error::Code::LimitExceeded, "the embedded property list is too large");
  }
  return slice.bytes(extent->offset, static_cast<std::size_t>(extent->size));
}

constexpr std::uint32_t fatMagic = 0xcafebabe;
constexpr std::uint32_t fatMagicWide = 0xcafebabf;

/// The slices of a universal file, whose header is always big-endian.
std::vector<Extent> slicesOf(const ByteRange& file, bool isWide) {
  const std::uint32_t count = StructFields(file.bytes(4, 4), ByteOrder::Big).word(0);
  if (count > MachOLimits::slices) fail(Error::Code::LimitExceeded, "the file has too many slices");
  const std::size_t entrySize = isWide ? 32 : 20;
  const std::string bytes = file.bytes(8, count * entrySize);
  std::vector<Extent> slices;
  for (std::size_t i = 0; i < count; ++i) {
    const StructFields entry = StructFields(bytes, ByteOrder::Big).part(i * entrySize, entrySize);
    slices.push_back(isWide ? Extent{.offset = entry.longWord(8), .size = entry.longWord(16)}
                            : Extent{.offset = entry.word(8), .size = entry.word(12)});
  }
  return slices;
}

/// Tries the slices in their order; an unusable one doesn't prevent using a later one. If all fail, reports the error
/// of the first.
std::string sectionOfFirst(const std::vector<Extent>& slices, const ByteRange& file) {
  std::optional<Failure> first;
  for (const Extent& slice : slices) {
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
    const ByteRange file(source);
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
