#pragma once

#include <QPointer>
#include <QWidget>

#include "core/ports/Interface.h"

class QAbstractButton;
class QMessageBox;

namespace mirvel::ui {

/// Implements alerts and panels with Qt's message boxes and file dialogs.
class QtInterface final : public Interface {
 public:
  QtInterface(Defaults& defaults, const Localize& localize);

  /// Sets the main window: the parent of sheets, and of alerts while no other window of the program is active.
  void setWindow(QWidget* window) { m_window = window; }

  void beginSheet(const Alert& question, std::function<void(int)> completion) override;
  void error(const std::string& message, const std::string& informativeText) override;
  std::optional<std::filesystem::path> savePanel(const SavePanel& panel) override;
  std::optional<std::filesystem::path> openPanel(const OpenPanel& panel) override;

 protected:
  Answer showAlert(const Alert& question) override;

 private:
  QMessageBox* makeBox(const Alert& question, QWidget* parent) const;
  QWidget* activeWindow() const;

  const Localize& m_localize;
  QPointer<QWidget> m_window;
};

}  // namespace mirvel::ui
