#include <string>
#include <string_view>
#include <vector>

#include "Check.h"
#include "core/catalogue/ByteSource.h"
#include "core/catalogue/HelperToolLines.h"
#include "core/catalogue/MachO.h"
#include "core/catalogue/MachOFile.h"
#include "core/propertylist/OldStyleText.h"
#include "core/propertylist/Reader.h"
#include "demo/HelperToolFile.h"

using namespace mirvel;

namespace {

void checkLines(std::string_view text) {
  const HelperToolLines lines = HelperToolLines::read(text);
  for (const std::string& field : {lines.identifier, lines.clients, lines.name}) {
    FUZZ_CHECK(field.find('\n') == std::string::npos);
    FUZZ_CHECK(text.find(field) != std::string_view::npos);
  }
}

void checkList(std::string_view bytes) {
  const auto document = propertylist::read(bytes);
  if (!document) return;
  constexpr std::size_t maximumSize = std::size_t{1} << 20U;
  const auto text = propertylist::oldStyleText(document->root(), maximumSize);
  if (!text) return;
  FUZZ_CHECK(text->size() <= maximumSize && text->ends_with(";\n"));
  checkLines(*text);
}

void checkFile(std::string_view bytes) {
  MemoryBytes source(bytes);
  const auto section = infoPlistSection(source);
  if (!section) return;
  FUZZ_CHECK(bytes.find(*section) != std::string_view::npos);
  checkList(*section);
}

/// Files of every format, each with a small list.
std::vector<std::string> goodFiles() {
  constexpr std::string_view list = "<plist><dict><key>CFBundleName</key><string>a</string></dict></plist>";
  std::vector<std::string> files{demo::helperToolFile(list)};
  for (const auto form : testdata::machOForms) files.push_back(testdata::machOFile(form, list));
  const std::string other = testdata::machOFile(testdata::machOForms[1], "", "__cstring");
  for (const bool isWide : {false, true}) files.push_back(testdata::fatFile(isWide, {other, files[2], files[3]}));
  return files;
}

/// Takes the good file selected by the first byte, and changes one byte of it for every three of the rest: two for the
/// position modulo the size, one for the new value.
std::string damaged(std::string_view input) {
  static const std::vector<std::string> files = goodFiles();
  std::string file = files[(input.empty() ? 0U : static_cast<unsigned char>(input[0])) % files.size()];
  for (std::size_t at = 1; at + 3 <= input.size(); at += 3) {
    const auto high = static_cast<unsigned char>(input[at]), low = static_cast<unsigned char>(input[at + 1]);
    file[(std::size_t{high} * 256 + low) % file.size()] = input[at + 2];
  }
  return file;
}

}  // namespace

/// In any file, the embedded list is either found within the bounds of the file or refused; and any list can be read
/// back after being embedded.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  checkFile(input);
  checkLines(input);
  checkList(input);
  checkFile(damaged(input));

  const std::string file = demo::helperToolFile(input);
  MemoryBytes source(file);
  const auto section = infoPlistSection(source);
  FUZZ_CHECK(section ? *section == input : size > MachOLimits::sectionBytes);
  return 0;
}
