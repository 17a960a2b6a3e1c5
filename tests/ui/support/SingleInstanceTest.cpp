#include "ui/support/SingleInstance.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <QLocalSocket>
#include <QThread>
#include <atomic>
#include <cstring>
#include <future>
#include <vector>

#include "core/process/FileDescriptor.h"
#include "support/TestData.h"
#include "ui/EventLoop.h"

namespace mirvel::ui {

namespace fs = std::filesystem;
using testdata::eventually;
using Role = SingleInstance::Role;

class SingleInstanceTest : public testing::Test {
 protected:
  std::unique_ptr<SingleInstance> make(const char* key = "key") const {
    return std::make_unique<SingleInstance>(QString::fromLatin1(key), m_folder.path());
  }
  /// The first instance; records the arguments that it receives.
  std::unique_ptr<SingleInstance> makeFirst() {
    auto first = make();
    EXPECT_EQ(first->claim(), Role::First);
    QObject::connect(first.get(), &SingleInstance::received, first.get(),
                     [this](const QString& argument) { m_received.push_back(argument.toStdString()); });
    return first;
  }
  /// Hands an argument over as another program would, while this one's event loop runs.
  bool hand(const QString& argument) const {
    std::atomic<bool> isDone = false;
    std::future<bool> result = std::async(std::launch::async, [&] {
      const bool isHanded = make()->hand(argument);
      isDone = true;
      return isHanded;
    });
    EXPECT_TRUE(eventually([&] { return isDone.load(); }));
    return result.get();
  }
  fs::path socket() const {
    for (const auto& entry : fs::directory_iterator(m_folder.path())) {
      if (entry.path().extension() == ".socket") return entry.path();
    }
    return {};
  }
  std::unique_ptr<QLocalSocket> connectPeer() const {
    auto peer = std::make_unique<QLocalSocket>();
    peer->connectToServer(QString::fromStdString(socket().string()));
    EXPECT_TRUE(peer->waitForConnected());
    return peer;
  }

  testdata::TemporaryFolder m_folder;
  std::vector<std::string> m_received;
};

TEST_F(SingleInstanceTest, SecondHandsItsArgumentToTheFirst) {
  const auto first = makeFirst();
  EXPECT_EQ(make()->claim(), Role::Second);
  struct stat status {};
  ASSERT_EQ(::stat(socket().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 077, 0U) << "open to nobody else";

  const std::vector<std::string> arguments = {"mirvel://aGVsbG8=", "", "Gr\xC3\xBC\xC3\x9F\x65",
                                              std::string(65536, 'x')};
  for (const auto& argument : arguments) EXPECT_TRUE(hand(QString::fromStdString(argument)));
  EXPECT_TRUE(eventually([&] { return m_received.size() == arguments.size(); }));
  EXPECT_EQ(m_received, arguments);

  EXPECT_FALSE(hand(QString(64 * 1024 + 1, QLatin1Char('x'))));
}

TEST_F(SingleInstanceTest, ProgramsWithDifferentKeysAreIndependent) {
  const auto first = makeFirst();
  EXPECT_EQ(make("other")->claim(), Role::First);
}

TEST_F(SingleInstanceTest, ReplacesWhatACrashedProgramLeft) {
  makeFirst().reset();
  auto first = makeFirst();
  const fs::path address = socket();
  first.reset();
  sockaddr_un name{};
  name.sun_family = AF_UNIX;
  std::strncpy(name.sun_path, address.c_str(), sizeof name.sun_path - 1);
  const FileDescriptor left(::socket(AF_UNIX, SOCK_STREAM, 0));
  ASSERT_EQ(::bind(left.number(), reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
  // The lock of a process that is no more; the number is beyond what the system gives.
  fs::path lock = address;
  m_folder.write(lock.replace_extension(".lock").filename(), "999999999\nmirvel\n\n");

  const auto next = makeFirst();
  EXPECT_TRUE(hand(QStringLiteral("hello")));
}

TEST_F(SingleInstanceTest, OneOfManyThatStartAtOnceIsFirst) {
  constexpr int starts = 8;
  std::atomic<int> firsts = 0;
  std::atomic<int> claimed = 0;
  std::vector<std::unique_ptr<QThread>> threads;  // servers need those of Qt
  for (int i = 0; i < starts; ++i) {
    threads.emplace_back(QThread::create([&] {
      const auto instance = make();
      if (instance->claim() == Role::First) ++firsts;
      ++claimed;
      while (claimed < starts) QThread::yieldCurrentThread();  // the first keeps its place until all have asked
    }));
    threads.back()->start();
  }
  for (auto& thread : threads) thread->wait();
  EXPECT_EQ(firsts, 1);
}

TEST_F(SingleInstanceTest, DropsMalformedMessagesAndNeverBlocks) {
  const auto first = makeFirst();
  const auto silent = connectPeer();
  const auto halting = connectPeer();
  halting->write("\0\0\0", 3);

  const struct {
    const char* what;
    QByteArray bytes;
  } rows[] = {
      {"too long", QByteArray("\x00\x01\x00\x01", 4)},
      {"as long as can be said", QByteArray("\xFF\xFF\xFF\xFFxx", 6)},
      {"more than it said", QByteArray("\x00\x00\x00\x01xy", 6)},
      {"no UTF-8", QByteArray("\x00\x00\x00\x02\xC3(", 6)},
  };
  for (const auto& row : rows) {
    const auto peer = connectPeer();
    peer->write(row.bytes);
    EXPECT_TRUE(eventually([&] { return peer->state() == QLocalSocket::UnconnectedState; })) << row.what;
    EXPECT_EQ(peer->bytesAvailable(), 0) << row.what << " is not answered";
  }
  EXPECT_TRUE(hand(QStringLiteral("hello")));
  halting->write("\5there", 6);
  EXPECT_TRUE(eventually([&] { return m_received.size() == 2; }));
  EXPECT_EQ(m_received, (std::vector<std::string>{"hello", "there"}));
  EXPECT_EQ(silent->state(), QLocalSocket::ConnectedState);
}

TEST_F(SingleInstanceTest, WorksAloneWithoutATrustedFolder) {
  SingleInstance lone(QStringLiteral("key"), std::nullopt);
  EXPECT_EQ(lone.claim(), Role::First);
  EXPECT_FALSE(lone.hand(QStringLiteral("hello")));
  SingleInstance missing(QStringLiteral("key"), m_folder.path() / "missing");
  EXPECT_EQ(missing.claim(), Role::First);
}

TEST_F(SingleInstanceTest, TrustsOnlyAFolderOfTheUsersAlone) {
  const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
  const auto folderWith = [&](fs::perms perms) {
    fs::permissions(m_folder.path(), perms);
    return SingleInstance::privateFolder();
  };
  qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(m_folder.path().string()));
  EXPECT_EQ(folderWith(fs::perms::owner_all), m_folder.path());
  EXPECT_NE(folderWith(fs::perms::all), m_folder.path());
  if (before.isNull()) {
    qunsetenv("XDG_RUNTIME_DIR");
  } else {
    qputenv("XDG_RUNTIME_DIR", before);
  }
}

}  // namespace mirvel::ui
