#pragma once

#include <QListView>

namespace mirvel::ui {

/// A list of applications that says so when there is none to show.
class ApplicationView final : public QListView {
 public:
  explicit ApplicationView(QWidget* parent = nullptr);

  /// What stands there instead of an empty list.
  void setEmptyText(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString m_emptyText;
};

}  // namespace mirvel::ui
