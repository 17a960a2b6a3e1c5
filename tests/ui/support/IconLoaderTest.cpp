#include "ui/support/IconLoader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QImage>
#include <QPixmap>
#include <chrono>

#include "support/TestData.h"
#include "ui/support/ReadPicture.h"

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

std::string png(int width, int height) {
  QImage image(width, height, QImage::Format_Mono);
  image.fill(1);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return buffer.data().toStdString();
}

/// An icon theme that has nothing but a few types of file.
class FewIcons {
 public:
  FewIcons() {
    m_folder.write("few/index.theme", "[Icon Theme]\nName=few\nDirectories=16\n\n[16]\nSize=16\nType=Fixed\n");
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::blue);
    fs::create_directories(m_folder.path() / "few/16");
    for (const char* name : {"text-x-script", "application-x-executable", "folder", "text-x-generic", "image-png"}) {
      pixmap.save(QString::fromStdString((m_folder.path() / "few/16" / name).string() + ".png"));
    }
    QIcon::setThemeSearchPaths({QString::fromStdString(m_folder.path().string())});
    QIcon::setThemeName(QStringLiteral("few"));
  }
  ~FewIcons() {
    QIcon::setThemeSearchPaths(m_paths);
    QIcon::setThemeName(m_name);
  }

 private:
  testdata::TemporaryFolder m_folder;
  QStringList m_paths = QIcon::themeSearchPaths();
  QString m_name = QIcon::themeName();
};

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

TEST(FileIcons, MatchTheTypeOfAFileEvenIfItIsMissing) {
  const FewIcons theme;
  const testdata::TemporaryFolder folder;
  const auto executable = [&](const char* name, const std::string& content) {
    fs::permissions(folder.write(name, content), fs::perms::owner_all);
  };
  folder.write("script.sh", "echo");
  folder.write("note.txt", "words");
  folder.write("words", "plain words");
  folder.write("empty", "");
  folder.write("picture", "\x89PNG\r\n\x1A\n");
  executable("tool", std::string("\x7F"
                                 "ELF\x02\x01\x01",
                                 7));
  executable("tool-script", "#!/bin/sh\n");
  executable("locked",
             "\x7F"
             "ELF");
  fs::create_directory(folder.path() / "inner");
  fs::create_directory(folder.path() / "Program.app");
  ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);

  const struct {
    const char* path;
    const char* icon;
  } rows[] = {
      {"script.sh", "text-x-script"},
      {"tool-script", "text-x-script"},
      {"tool", "application-x-executable"},
      {"locked", "application-x-executable"},
      {"note.txt", "text-x-generic"},
      {"words", "text-x-generic"},
      {"empty", "text-x-generic"},
      {"pipe", "text-x-generic"},
      {"picture", "image-png"},
      {"missing.png", "image-png"},
      {"missing.py", "text-x-script"},
      {"missing", "text-x-generic"},
      {"latin\xFC.png", "image-png"},
      {"inner", "folder"},
      {"Program.app", "application-x-executable"},
      {"Missing.app", "application-x-executable"},
      {"/dev/null", "text-x-generic"},
  };
  FileIcons icons;
  for (const auto& row : rows) {
    EXPECT_EQ(icons.icon(folder.path() / row.path).name().toStdString(), row.icon) << row.path;
  }
}

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
