#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <filesystem>
#include <memory>
#include <optional>

class QLocalSocket;

namespace mirvel::ui {

/// Limits the program to one instance per user: a second instance passes its argument to the first and exits.
class SingleInstance final : public QObject {
  Q_OBJECT

 public:
  enum class Role { First, Second };

  /// Instances with different keys don't affect each other. The folder must be private to the user.
  explicit SingleInstance(const QString& key, std::optional<std::filesystem::path> folder = privateFolder());
  ~SingleInstance() override;

  /// `$XDG_RUNTIME_DIR`, or a folder of the user in the temporary folder, created if necessary; nullopt if neither is
  /// private to the user.
  static std::optional<std::filesystem::path> privateFolder();

  /// Claims the first role until this object is destroyed, unless another running instance holds it; that of a crashed
  /// instance is free. Without a usable folder the role is First too. Must be called once only.
  Role claim();
  /// Called by a second instance: passes an argument of up to 64 KiB of UTF-8, which may be empty, to the first. Waits
  /// for up to five seconds; returns false if the first instance doesn't answer.
  bool hand(const QString& argument);

 Q_SIGNALS:
  /// Emitted in the first instance when a second one was started; the argument is empty if it had none.
  void received(const QString& argument);

 private:
  void accept();
  void read(QLocalSocket& peer);
  std::filesystem::path place(const char* extension) const;

  std::optional<std::filesystem::path> m_folder;
  QString m_name;
  std::unique_ptr<QLockFile> m_lock;  // declared first, so that the lock is released after the server has closed
  QLocalServer m_server;
};

}  // namespace mirvel::ui
