#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// Mach-O files of all forms, with further commands and sections around the one under test.
namespace mirvel::testdata {

struct MachOForm {
  bool isWide, isBigEndian;
};
inline constexpr MachOForm machOForms[] = {{false, false}, {false, true}, {true, false}, {true, true}};

class MachOBytes {
 public:
  explicit MachOBytes(MachOForm form) : m_form(form) {}

  void number(std::uint64_t number, unsigned width) {
    for (unsigned i = 0; i < width; ++i) {
      m_bytes += static_cast<char>(number >> (8 * (m_form.isBigEndian ? width - 1 - i : i)) & 0xFFU);
    }
  }
  void words(std::initializer_list<std::uint32_t> words) {
    for (const auto word : words) number(word, 4);
  }
  /// Numbers of the size of an address.
  void addresses(std::initializer_list<std::uint64_t> numbers) {
    for (const auto each : numbers) number(each, m_form.isWide ? 8 : 4);
  }
  void name(std::string_view name) { (m_bytes += name).append(16 - name.size(), '\0'); }
  std::string& bytes() { return m_bytes; }

 private:
  MachOForm m_form;
  std::string m_bytes;
};

/// An executable with an unrelated command, a segment without sections, and a segment `__TEXT` with two sections: code
/// and the given one.
inline std::string machOFile(MachOForm form, std::string_view content, std::string_view section = "__info_plist") {
  const std::uint32_t header = form.isWide ? 32 : 28, segment = form.isWide ? 72 : 56, entry = form.isWide ? 80 : 68;
  const std::uint32_t command = form.isWide ? 0x19 : 0x01, other = 24, sizes = other + 2 * segment + 2 * entry;
  MachOBytes file(form);
  file.words({form.isWide ? 0xfeedfacfU : 0xfeedfaceU, 18, 0, 2, 3, sizes, 0});
  if (form.isWide) file.words({0});
  file.words({0x1b, other, 1, 2, 3, 4});
  file.words({command, segment});
  file.name("__PAGEZERO");
  file.addresses({0, 4096, 0, 0});
  file.words({0, 0, 0, 0});
  file.words({command, segment + 2 * entry});
  file.name("__TEXT");
  file.addresses({4096, 4096, 0, header + sizes + 4 + content.size()});
  file.words({5, 5, 2, 0});
  for (const bool isCode : {true, false}) {
    file.name(isCode ? "__text" : section);
    file.name("__TEXT");
    file.addresses({4096, isCode ? 4 : content.size()});
    file.words({header + sizes + (isCode ? 0U : 4U), 2, 0, 0, 0, 0, 0});
    if (form.isWide) file.words({0});
  }
  return file.bytes().append("code").append(content);
}

struct FatSlice {
  std::uint64_t offset, size;
};

/// The header of a universal file.
inline std::string fatHeader(bool isWide, const std::vector<FatSlice>& slices) {
  MachOBytes header({.isWide = isWide, .isBigEndian = true});
  header.words({isWide ? 0xcafebabfU : 0xcafebabeU, static_cast<std::uint32_t>(slices.size())});
  for (const auto& slice : slices) {
    header.words({7, 3});
    header.addresses({slice.offset, slice.size});
    header.words({12});
    if (isWide) header.words({0});
  }
  return header.bytes();
}

inline std::string fatFile(bool isWide, const std::vector<std::string>& files) {
  std::vector<FatSlice> slices;
  std::string bodies;
  const std::size_t begin = 8 + files.size() * (isWide ? 32 : 20);
  for (const auto& file : files) {
    slices.push_back({begin + bodies.size(), file.size()});
    bodies += file;
  }
  return fatHeader(isWide, slices) + bodies;
}

}  // namespace mirvel::testdata
