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

/// Lets the program run once per user: a second start hands its argument to the first and ends.
class SingleInstance final : public QObject {
  Q_OBJECT

 public:
  enum class Role { First, Second };

  /// Programs with other keys are other programs. The folder must be the user's alone.
  explicit SingleInstance(const QString& key, std::optional<std::filesystem::path> folder = privateFolder());
  ~SingleInstance() override;

  /// `$XDG_RUNTIME_DIR`, or a folder of the user's own below the temporary one, made if need be; none if neither can be
  /// trusted.
  static std::optional<std::filesystem::path> privateFolder();

  /// Takes the first place until the end of this object, if it is free; the place of a program that crashed is. A
  /// program that can't tell, for want of a folder, is the first too. To be called once.
  Role claim();
  /// Of a second program: gives the first an argument of up to 64 KiB of UTF-8, which may be empty. Waits for up to
  /// five seconds; false: the first doesn't answer.
  bool hand(const QString& argument);

 Q_SIGNALS:
  /// Of a first program: a second one was started with this argument, empty if with none.
  void received(const QString& argument);

 private:
  void accept();
  void read(QLocalSocket& peer);
  std::filesystem::path place(const char* extension) const;

  std::optional<std::filesystem::path> m_folder;
  QString m_name;
  std::unique_ptr<QLockFile> m_lock;  // held longer than the server
  QLocalServer m_server;
};

}  // namespace mirvel::ui
