#include "core/catalogue/MachO.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "core/catalogue/ByteSource.h"
#include "core/catalogue/MachOFile.h"
#include "demo/HelperToolFile.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using namespace testdata;
using Code = Error::Code;

Result<std::string> sectionIn(std::string_view bytes) {
  MemoryBytes source(bytes);
  return infoPlistSection(source);
}

void expectRejected(std::string_view bytes, Code code, const std::string& what) {
  const auto section = sectionIn(bytes);
  ASSERT_FALSE(section) << what;
  EXPECT_EQ(section.error().code, code) << what << ": " << section.error().text();
}

std::string patched(std::string bytes, std::size_t offset, std::uint32_t word, bool isBigEndian = false) {
  MachOBytes field({.isWide = false, .isBigEndian = isBigEndian});
  field.words({word});
  return bytes.replace(offset, 4, field.bytes());
}

std::vector<std::string> goodFiles() {
  std::vector<std::string> files{demo::helperToolFile("the list")};
  for (const auto form : machOForms) files.push_back(machOFile(form, "the list"));
  const std::string other = machOFile(machOForms[1], "the code's names", "__cstring");
  for (const bool isWide : {false, true})
    files.push_back(fatFile(isWide, {other, machOFile(machOForms[2], "the list")}));
  return files;
}

TEST(MachOTest, TheFirstSectionIsFoundInFilesOfAllForms) {
  const auto files = goodFiles();
  for (std::size_t i = 0; i < files.size(); ++i) {
    const auto section = sectionIn(files[i]);
    ASSERT_TRUE(section) << i << ": " << section.error().text();
    EXPECT_EQ(*section, "the list") << i;
  }
  const std::string other = machOFile(machOForms[0], "", "__cstring");
  const auto first = sectionIn(fatFile(false, {"junk", other, demo::helperToolFile("1"), demo::helperToolFile("2")}));
  ASSERT_TRUE(first) << first.error().text();
  EXPECT_EQ(*first, "1");
}

TEST(MachOTest, EveryPrefixOfAGoodFileIsRejected) {
  for (const std::string& file : goodFiles()) {
    for (std::size_t length = 0; length < file.size(); ++length) {
      EXPECT_FALSE(sectionIn(std::string_view(file).substr(0, length))) << length << " of " << file.size();
    }
  }
}

TEST(MachOTest, DamagedFilesAreRejected) {
  const struct {
    const char* damage;
    std::size_t offset;
    std::uint32_t word;
    Code code;
  } rows[] = {
      {"another magic number", 0, 0x464c457f, Code::Malformed},
      {"no commands", 16, 0, Code::NotFound},
      {"too many commands", 16, 4097, Code::LimitExceeded},
      {"commands of no size", 20, 0, Code::Malformed},
      {"commands of the largest size", 20, 1 << 20, Code::Malformed},
      {"commands of a larger size", 20, (1 << 20) + 1, Code::LimitExceeded},
      {"an unrelated command", 32, 0x1b, Code::NotFound},
      {"a segment of a 32-bit file", 32, 1, Code::NotFound},
      {"a command of no size", 36, 0, Code::Malformed},
      {"a command smaller than its header", 36, 7, Code::Malformed},
      {"a segment smaller than its fields", 36, 71, Code::Malformed},
      {"a command that ends after the commands", 36, 153, Code::Malformed},
      {"a command of the largest number", 36, 0xffffffff, Code::Malformed},
      {"no sections", 96, 0, Code::NotFound},
      {"one section too many", 96, 2, Code::Malformed},
      {"sections of the largest number", 96, 0xffffffff, Code::Malformed},
      {"a section of another name", 112, 0x7473696d, Code::NotFound},
      {"a section of another segment", 120, 0x41445f5f, Code::NotFound},
      {"a section that ends after the file", 144, 9, Code::Malformed},
      {"a section of the largest size", 144, 1 << 20, Code::Malformed},
      {"a section of a larger size", 144, (1 << 20) + 1, Code::LimitExceeded},
      {"a section size with its high half set", 148, 0xffffffff, Code::LimitExceeded},
      {"a section that begins one byte later", 152, 185, Code::Malformed},
      {"a section that begins after the file", 152, 0xffffffff, Code::Malformed},
  };
  for (const auto& row : rows) {
    expectRejected(patched(demo::helperToolFile("the list"), row.offset, row.word), row.code, row.damage);
  }
}

TEST(MachOTest, CommandsAndSlicesOutOfBoundsAreRejected) {
  const std::string tool = demo::helperToolFile("the list");
  const std::string other = machOFile({.isWide = true, .isBigEndian = false}, "", "__cstring");
  const std::uint64_t size = tool.size(), most = UINT64_MAX;
  const std::pair<std::string, Code> rows[] = {
      {patched(other, 16, 4), Code::Malformed},  // more commands than there are
      {patched(other, 16, 4096), Code::Malformed},
      {fatHeader(false, {}), Code::NotFound},
      {patched(fatFile(false, {tool}), 4, 64, true), Code::Malformed},
      {patched(fatFile(false, {tool}), 4, 65, true), Code::LimitExceeded},
      {patched(fatFile(true, {tool}), 4, 0xffffffff, true), Code::LimitExceeded},
      {fatHeader(false, {{28, size - 1}}) + tool, Code::Malformed},  // the section ends after its slice
      {fatHeader(false, {{29, size}}) + tool, Code::Malformed},
      {fatHeader(false, {{0xffffffff, 0xffffffff}}) + tool, Code::Malformed},
      {fatHeader(true, {{40, most}}) + tool, Code::Malformed},
      {fatHeader(true, {{most, size}}) + tool, Code::Malformed},
      {fatHeader(true, {{most - size + 1, size}}) + tool, Code::Malformed},  // the end is 0 in 64 bits
      {fatFile(false, {fatFile(false, {tool})}), Code::Malformed},
      {fatHeader(false, {{0, 100}}) + tool, Code::Malformed},  // a slice that is the file itself
      {"\xca\xfe\xba\xbe" + std::string("\0\0\0\x34\0\x1d\x0a\0", 8), Code::Malformed},  // a Java class
  };
  for (const auto& row : rows) expectRejected(row.first, row.second, "row " + std::to_string(&row - rows));
}

TEST(MachOTest, ASliceBeyondFourGigabytesIsRead) {
  const TemporaryFolder folder;
  constexpr std::uint64_t far = std::uint64_t{5} << 30U;
  const std::string tool = demo::helperToolFile("the list");
  const auto path = folder.write("tool", fatHeader(true, {{far, tool.size()}}));
  std::filesystem::resize_file(path, far);  // sparse
  std::ofstream(path, std::ios::binary | std::ios::app) << tool;
  const auto section = infoPlistSection(path);
  ASSERT_TRUE(section) << section.error().text();
  EXPECT_EQ(*section, "the list");
}

TEST(MachOTest, OnlyRegularFilesAreOpened) {
  const TemporaryFolder folder;
  const auto pipe = folder.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::vector<std::pair<std::filesystem::path, Code>> rows{
      {pipe, Code::Malformed},
      {folder.path(), Code::Malformed},
      {"/dev/zero", Code::Malformed},
      {folder.path() / "missing", Code::NotFound},
      {std::string("/bin/sh\0x", 9), Code::BadArgument},
      {folder.write("script", "#!/bin/sh\n"), Code::Malformed},
  };
  for (const auto& [path, code] : rows) {
    const auto section = infoPlistSection(path);
    ASSERT_FALSE(section) << path;
    EXPECT_EQ(section.error().code, code) << section.error().text();
    EXPECT_EQ(section.error().file, path.native());
  }
}

TEST(MachOTest, AFileThatIsTruncatedWhileOpenIsAnError) {
  const TemporaryFolder folder;
  const auto path = folder.write("tool", demo::helperToolFile("the list"));
  auto file = FileBytes::open(path);
  ASSERT_TRUE(file);
  std::filesystem::resize_file(path, 190);
  const auto section = infoPlistSection(*file);
  ASSERT_FALSE(section);
  EXPECT_EQ(section.error().code, Code::Io);
}

}  // namespace
}  // namespace mirvel
