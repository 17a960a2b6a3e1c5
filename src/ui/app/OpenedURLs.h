#pragma once

#include <QObject>

namespace mirvel::ui {

class Application;

/// Opens the job URLs that the running program receives from a second start or from the desktop.
class OpenedURLs final : public QObject {
 public:
  /// Filters the events of the QApplication until destroyed. `application` must outlive this object, and must have been
  /// started when the first URL arrives.
  explicit OpenedURLs(Application& application);

  /// Brings the window to the front and selects the job of the URL (see `JobAddress`). An empty text only brings the
  /// window to the front.
  void open(const QString& url);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Application& m_application;
};

}  // namespace mirvel::ui
