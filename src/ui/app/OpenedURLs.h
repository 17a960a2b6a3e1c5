#pragma once

#include <QObject>

namespace mirvel::ui {

class Application;

/// What is handed to the running program from outside: job URLs, by a second start or by the desktop.
class OpenedURLs final : public QObject {
 public:
  /// Listens to the application's events as long as it lives.
  explicit OpenedURLs(Application& application);

  /// Shows the window, and the job of the URL in it. An empty text only shows the window.
  void open(const QString& url);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Application& m_application;
};

}  // namespace mirvel::ui
