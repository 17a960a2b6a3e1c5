#include "ui/support/SingleInstance.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QtEndian>
#include <string>
#include <utility>

#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

using Length = quint32;  // the length of the following argument, big-endian

constexpr qsizetype mostBytes = 65536;
constexpr qsizetype headSize = sizeof(Length);
constexpr int mostPeers = 16;
constexpr int patience = 5000;  // milliseconds to wait for a peer's message or reply
constexpr char answer = '\x06';

bool isPrivate(const fs::path& folder) {
  struct stat status {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::getuid() &&
         (status.st_mode & 077) == 0;
}

QByteArray framed(const QByteArray& argument) {
  QByteArray head(headSize, '\0');
  qToBigEndian(static_cast<Length>(argument.size()), head.data());
  return head + argument;
}

/// Whether the message exceeds the maximum length, or the length that it announces.
bool isTooLong(const QByteArray& bytes) {
  if (bytes.size() < headSize) return false;
  const auto length = static_cast<qsizetype>(qFromBigEndian<Length>(bytes.constData()));
  return length > mostBytes || bytes.size() > headSize + length;
}

bool isComplete(const QByteArray& bytes) {
  return bytes.size() >= headSize && bytes == framed(bytes.mid(headSize));
}

}  // namespace

SingleInstance::SingleInstance(const QString& key, std::optional<fs::path> folder) : m_folder(std::move(folder)) {
  // Hashed to keep it short: socket addresses are limited to about 100 bytes; unix(7).
  const QByteArray hash = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
  m_name = QStringLiteral("mirvel-") + QString::fromLatin1(hash);
  connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::accept);
}

SingleInstance::~SingleInstance() = default;

std::optional<fs::path> SingleInstance::privateFolder() {
  const fs::path runtime = qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString();
  if (runtime.is_absolute() && isPrivate(runtime)) return runtime;
  std::error_code failure;
  const fs::path own = fs::temp_directory_path(failure) / ("mirvel-" + std::to_string(::getuid()));
  if (failure) return std::nullopt;
  (void)::mkdir(own.c_str(), 0700);  // may exist already
  if (isPrivate(own)) return own;
  return std::nullopt;
}

SingleInstance::Role SingleInstance::claim() {
  const auto lockFile = m_folder ? qtPath(place(".lock")) : std::nullopt;
  if (!lockFile) return Role::First;
  m_lock = std::make_unique<QLockFile>(*lockFile);
  m_lock->setStaleLockTime(0);  // stale only if its process has ended, whatever its age
  if (!m_lock->tryLock(0)) return m_lock->error() == QLockFile::LockFailedError ? Role::Second : Role::First;
  const QString address = *qtPath(place(".socket"));
  QLocalServer::removeServer(address);  // left by a program that crashed
  m_server.setSocketOptions(QLocalServer::UserAccessOption);
  (void)m_server.listen(address);  // without a socket the first instance still works
  return Role::First;
}

bool SingleInstance::hand(const QString& argument) {
  const QByteArray bytes = argument.toUtf8();
  const auto address = m_folder ? qtPath(place(".socket")) : std::nullopt;
  if (!address || bytes.size() > mostBytes) return false;
  const QDeadlineTimer deadline(patience);
  QLocalSocket socket;
  socket.connectToServer(*address);
  while (!socket.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
    if (deadline.hasExpired()) return false;
    QThread::msleep(20);  // the first instance holds the lock and is about to listen
    socket.connectToServer(*address);
  }
  socket.write(framed(bytes));
  while (socket.bytesAvailable() == 0) {
    if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) return false;
  }
  return socket.read(1) == QByteArray(1, answer);
}

void SingleInstance::accept() {
  while (QLocalSocket* peer = m_server.nextPendingConnection()) {
    connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
    if (m_server.findChildren<QLocalSocket*>().size() > mostPeers) {
      peer->abort();
      continue;
    }
    peer->setReadBufferSize(headSize + mostBytes + 1);
    connect(peer, &QLocalSocket::readyRead, this, [this, peer] { read(*peer); });
    QTimer::singleShot(patience, peer, [peer] { peer->abort(); });
    read(*peer);
  }
}

/// Peeks until the whole message has arrived.
void SingleInstance::read(QLocalSocket& peer) {
  const QByteArray bytes = peer.peek(headSize + mostBytes + 1);
  if (isTooLong(bytes)) return peer.abort();
  if (!isComplete(bytes)) return;
  const QByteArray text = bytes.mid(headSize);
  const QString argument = QString::fromUtf8(text);
  if (argument.toUtf8() != text) return peer.abort();  // not UTF-8
  disconnect(&peer, &QLocalSocket::readyRead, this, nullptr);
  peer.write(&answer, 1);
  peer.disconnectFromServer();  // after the answer has been written
  Q_EMIT received(argument);
}

fs::path SingleInstance::place(const char* extension) const {
  return *m_folder / (utf8(m_name) + extension);
}

}  // namespace mirvel::ui
