#pragma once

#include <QWidget>
#include <vector>

#include "core/files/URL.h"

class QHBoxLayout;
class QToolButton;

namespace mirvel {
class Workspace;
}

namespace mirvel::ui {

/// A path as a row of components, which open their folder, or reveal the file, when they are clicked. If the path is
/// too long, components in the middle are elided. Left to right in any language.
class PathControl final : public QWidget {
  Q_OBJECT

 public:
  /// `workspace` must outlive the widget.
  PathControl(Workspace& workspace, const URL& file, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Component {
    QToolButton* button;
    QString name;
  };

  void add(const std::filesystem::path& name, const URL& url, bool isLast);
  void fit();

  Workspace& m_workspace;
  QHBoxLayout* m_row;
  std::vector<Component> m_components;
};

}  // namespace mirvel::ui
