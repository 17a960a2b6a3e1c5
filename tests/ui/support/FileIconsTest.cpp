#include "ui/support/FileIcons.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QTemporaryDir>
#include <fstream>

#include "support/TestData.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

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

TEST(FileIcons, AreThoseOfWhatAFileIsOrWouldBe) {
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

}  // namespace mirvel::ui
