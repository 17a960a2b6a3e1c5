#include "demo/HelperToolFile.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace mirvel::demo {

namespace {

void put(std::string& bytes, std::uint64_t number, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFFU);
}

void putWords(std::string& bytes, std::initializer_list<std::uint32_t> words) {
  for (const std::uint32_t word : words) put(bytes, word, 4);
}

void putLongWords(std::string& bytes, std::initializer_list<std::uint64_t> words) {
  for (const std::uint64_t word : words) put(bytes, word, 8);
}

void putName(std::string& bytes, std::string_view name) {
  bytes += name;
  bytes.append(16 - name.size(), '\0');
}

constexpr std::uint32_t headerSize = 32, segmentSize = 72, sectionSize = 80;
constexpr std::uint32_t contentOffset = headerSize + segmentSize + sectionSize;
constexpr std::uint64_t loadAddress = std::uint64_t{1} << 32U;

// The layouts of mach_header_64, segment_command_64 and section_64 in <mach-o/loader.h>.
void putHeader(std::string& bytes) {
  constexpr std::uint32_t magic = 0xfeedfacf, processor = 0x01000007, anyModel = 3, executable = 2, commandCount = 1;
  putWords(bytes, {magic, processor, anyModel, executable, commandCount, segmentSize + sectionSize, 0, 0});
}

void putSegment(std::string& bytes, std::uint64_t fileSize) {
  constexpr std::uint32_t segmentCommand = 0x19, readAndRun = 5, sectionCount = 1;
  putWords(bytes, {segmentCommand, segmentSize + sectionSize});
  putName(bytes, "__TEXT");
  putLongWords(bytes, {loadAddress, fileSize, 0, fileSize});
  putWords(bytes, {readAndRun, readAndRun, sectionCount, 0});
}

void putSection(std::string& bytes, std::uint64_t size) {
  putName(bytes, "__info_plist");
  putName(bytes, "__TEXT");
  putLongWords(bytes, {loadAddress + contentOffset, size});
  putWords(bytes, {contentOffset, 0, 0, 0, 0, 0, 0, 0});
}

}  // namespace

std::string helperToolFile(std::string_view infoPlist) {
  std::string bytes;
  putHeader(bytes);
  putSegment(bytes, contentOffset + infoPlist.size());
  putSection(bytes, infoPlist.size());
  return bytes.append(infoPlist);
}

}  // namespace mirvel::demo
