#include "ui/support/IconLoader.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <chrono>

#include "support/TestData.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

QImage drawn(const QIcon& icon, int side) {
  return icon.pixmap(QSize(side, side), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
}

void savePicture(const fs::path& file, QSize size, QColor color) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  ASSERT_TRUE(image.save(QString::fromStdString(file.string()), "PNG"));
}

}  // namespace

TEST(IconLoader, FindsTheProgramsOwnPicturesByName) {
  IconLoader loader;
  EXPECT_EQ(drawn(loader.icon(Image::named("mirvel-test")), 32).pixelColor(16, 16), QColor(Qt::red));
  EXPECT_FALSE(loader.icon(Image::named("mirvel-test-symbol")).isNull());
  EXPECT_FALSE(IconLoader::symbol("mirvel-test-symbol").isNull());
  for (const char* name : {"", "no-such-picture-anywhere", "mirvel-nothing", "../color/mirvel-test"}) {
    EXPECT_TRUE(loader.icon(Image::named(name)).isNull()) << name;
  }
}

TEST(IconLoader, FitsAPictureIntoASquare) {
  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "wide.png";
  savePicture(file, {200, 100}, Qt::blue);
  IconLoader loader;
  const QImage image = drawn(loader.icon(Image::file(file)), 64);
  EXPECT_EQ(image.size(), QSize(64, 64));
  EXPECT_EQ(image.pixelColor(32, 32), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(32, 4).alpha(), 0);
}

TEST(IconLoader, SeesThatAPictureHasChangedOrGone) {
  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "icon.png";
  savePicture(file, {32, 32}, Qt::blue);
  IconLoader loader;
  EXPECT_EQ(drawn(loader.icon(Image::file(file)), 32).pixelColor(16, 16), QColor(Qt::blue));

  savePicture(file, {32, 32}, Qt::green);
  fs::last_write_time(file, fs::file_time_type::clock::now() + std::chrono::seconds(5));
  EXPECT_EQ(drawn(loader.icon(Image::file(file)), 32).pixelColor(16, 16), QColor(Qt::green));

  fs::remove(file);
  EXPECT_TRUE(loader.icon(Image::file(file)).isNull());
}

}  // namespace mirvel::ui
