#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "core/files/ReadFile.h"
#include "help/Guide.h"

namespace {

namespace fs = std::filesystem;
using namespace mirvel;

constexpr std::size_t largestGuide = 16'000'000;

bool write(const fs::path& file, const std::string& content) {
  std::ofstream out(file, std::ios::binary);
  out << content;
  out.close();
  return out.good();
}

/// Writes the pages into the folder. Returns why that failed; empty on success.
std::string makePages(const fs::path& source, const fs::path& folder) {
  const auto text = readFile(source, largestGuide);
  if (!text) return text.error().text();
  auto guide = help::readGuide(*text);
  if (!guide) {
    Error error = guide.error();
    error.file = source.string();
    return error.text();
  }
  std::error_code failure;
  fs::create_directories(folder, failure);
  for (const auto& image : guide->images) {
    fs::create_directories((folder / image).parent_path(), failure);
    fs::copy_file(source.parent_path() / image, folder / image, fs::copy_options::overwrite_existing, failure);
    if (failure) return (source.parent_path() / image).string() + ": " + failure.message();
  }
  bool isWritten = write(folder / "index.html", help::pageOf(*guide));
  for (const auto& heading : guide->headings) {
    isWritten = isWritten && write(folder / (heading.id + ".html"), help::pageLeadingTo(heading));
  }
  return isWritten ? std::string() : "can't write to " + folder.string();
}

}  // namespace

/// Makes the help pages out of the guide, when the program is built: mirvel-make-help GUIDE.md FOLDER
int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: mirvel-make-help GUIDE.md FOLDER\n";
    return 2;
  }
  const std::string failure = makePages(argv[1], argv[2]);
  if (failure.empty()) return 0;
  std::cerr << "mirvel-make-help: " << failure << '\n';
  return 1;
}
