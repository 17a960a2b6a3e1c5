#include "ui/support/QtWorkspace.h"

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QUrl>
#include <filesystem>
#include <vector>

#include "support/TestData.h"
#include "ui/EventLoop.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

/// Replaces the desktop and records what it was asked to open.
class Opener final : public QObject {
  Q_OBJECT

 public:
  Opener() {
    for (const char* scheme : {"file", "https", "mailto"}) {
      QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "open");
    }
  }
  ~Opener() override {
    for (const char* scheme : {"file", "https", "mailto"}) {
      QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }
  }

  std::vector<std::string> opened;

 public Q_SLOTS:
  void open(const QUrl& url) { opened.push_back(url.toEncoded().toStdString()); }
};

}  // namespace

class QtWorkspaceTest : public testing::Test {
 protected:
  testdata::TemporaryFolder m_folder;
  Opener m_desktop;
  QtWorkspace m_workspace{{m_folder.path() / "none", m_folder.path()}};
};

TEST_F(QtWorkspaceTest, OpensFilesByTheirBytesAndOnlyWhatIsThere) {
  const std::string root = "file://" + m_folder.path().string();
  const struct {
    const char* name;
    const char* encoded;
  } rows[] = {{"plain", "/plain"}, {"a b#?%.txt", "/a%20b%23%3F%25.txt"}, {"latin\xFC", "/latin%FC"}};
  for (const auto& row : rows) {
    EXPECT_TRUE(m_workspace.open(URL::file(m_folder.write(row.name, ""))));
    ASSERT_FALSE(m_desktop.opened.empty());
    EXPECT_EQ(m_desktop.opened.back(), root + row.encoded);
  }
  m_desktop.opened.clear();
  EXPECT_FALSE(m_workspace.open(URL::file(m_folder.path() / "missing")));
  EXPECT_FALSE(m_workspace.open(URL::address("identity")));
  EXPECT_TRUE(m_desktop.opened.empty());
}

TEST_F(QtWorkspaceTest, OpensAddressesThatHaveAScheme) {
  for (const char* address : {"https://mirvel.app/help?a=b", "mailto:someone@example.org"}) {
    EXPECT_TRUE(m_workspace.openAddress(address));
    EXPECT_EQ(m_desktop.opened.back(), address);
  }
  m_desktop.opened.clear();
  for (const char* address : {"", "mirvel.app", "/etc/passwd", "https://[", "-R"}) {
    EXPECT_FALSE(m_workspace.openAddress(address)) << address;
  }
  EXPECT_TRUE(m_desktop.opened.empty());
}

#ifdef Q_OS_LINUX
TEST_F(QtWorkspaceTest, RevealsInTheFolderWhereNoFileManagerAnswers) {
  EXPECT_TRUE(m_workspace.reveal(URL::file(m_folder.write("x/job.plist", ""))));
  EXPECT_TRUE(testdata::eventually([this] { return !m_desktop.opened.empty(); }));
  EXPECT_EQ(m_desktop.opened, std::vector{"file://" + (m_folder.path() / "x").string()});
  EXPECT_FALSE(m_workspace.reveal(URL::file(m_folder.path() / "missing")));
}

TEST_F(QtWorkspaceTest, FindsApplicationsByName) {
  const std::string direct = m_folder.write("Editor.desktop", "");
  const std::string inner = m_folder.write("tools/Script Editor.desktop", "");
  m_folder.write("tools/deep/Deep.desktop", "");
  EXPECT_EQ(m_workspace.fullPathForApplication("Editor"), direct);
  EXPECT_EQ(m_workspace.fullPathForApplication("Script Editor"), inner);
  for (const char* name : {"", "Deep", "Missing", "tools/Script Editor", "../x"}) {
    EXPECT_EQ(m_workspace.fullPathForApplication(name), std::nullopt) << name;
  }
}
#endif

TEST_F(QtWorkspaceTest, NamesFilesAsTheFileViewerDoes) {
  const struct {
    const char* path;
    const char* name;
  } rows[] = {{"/a/b.app", "b.app"}, {"/a/b/", "b"}, {"/", "/"}, {"b", "b"}, {"/latin\xFC", "latin\xEF\xBF\xBD"}};
  for (const auto& row : rows) EXPECT_EQ(m_workspace.displayName(row.path), row.name) << row.path;
}

TEST(QtText, ConvertsEveryPathOrReportsThatItCant) {
  const struct {
    const char* bytes;
    bool isHeld;
  } rows[] = {
      {"/plain", true},
      {"/Gr\xC3\xBC\xC3\x9F"
       "e",
       true},
      {"/\xF0\x9F\x95\x92", true},
      {"/\xEF\xBF\xBD", true},
      {"/latin\xFC", false},
      {"/cut\xC3", false},
  };
  for (const auto& row : rows) {
    const auto held = qtPath(row.bytes);
    EXPECT_EQ(held.has_value(), row.isHeld) << row.bytes;
    EXPECT_TRUE(!held || path(*held) == row.bytes) << row.bytes;
  }
  EXPECT_EQ(displayText("/latin\xFC"), QStringLiteral("/latin\uFFFD"));
}

}  // namespace mirvel::ui

#include "QtWorkspaceTest.moc"
