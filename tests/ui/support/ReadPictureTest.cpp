#include "ui/support/ReadPicture.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QBuffer>

#include "support/TestData.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

std::string png(int width, int height) {
  QImage image(width, height, QImage::Format_Mono);
  image.fill(1);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return buffer.data().toStdString();
}

}  // namespace

TEST(Picture, IsReadByContentWithinBounds) {
  const testdata::TemporaryFolder folder;
  const std::string small = png(20, 10);
  const struct {
    const char* name;
    std::string content;
    bool isShown;
  } rows[] = {
      {"a.png", small, true},
      {"picture of another name.txt", small, true},
      {"not UTF-8 \xFC.png", small, true},
      {"edge.png", png(4096, 1), true},
      {"wide.png", png(4097, 1), false},
      {"tall.png", png(1, 4097), false},
      {"cut.png", small.substr(0, small.size() / 2), false},
      {"empty.png", "", false},
      {"text.png", "no picture", false},
      {"long.png", small + std::string(16 * 1024 * 1024, '\0'), false},
  };
  for (const auto& row : rows) {
    const auto image = readPicture(folder.write(row.name, row.content));
    EXPECT_EQ(image.has_value(), row.isShown) << row.name;
  }
}

TEST(Picture, IsNeverWaitedForAtAPipe) {
  const testdata::TemporaryFolder folder;
  const fs::path pipe = folder.path() / "pipe.png";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const fs::path& path : {pipe, folder.path(), fs::path("/dev/zero"), folder.path() / "missing"}) {
    EXPECT_FALSE(readPicture(path)) << path;
    EXPECT_FALSE(readStart(path, 16)) << path;
  }
}

}  // namespace mirvel::ui
