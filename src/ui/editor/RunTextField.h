#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "ui/editor/GrowingText.h"

namespace mirvel::ui {

/// A field with a command: one paragraph, as tall as it needs to be, that takes files which are dropped on it.
class RunTextField final : public GrowingText {
 public:
  explicit RunTextField(QWidget* parent = nullptr);

  std::string text() const;
  std::string selectedText() const;
  void setText(const std::string& text);
  /// Puts a command where the selection is; without one, behind the text. Takes the focus, as if the user had typed it.
  void insertCommand(const std::string& command);
  /// Shows the text as one that can't be taken as it is, and says why; empty: it can.
  void markInvalid(const QString& what);
  /// Likewise, for the files that it names and that aren't there; none: it can.
  void markMissing(const std::vector<std::filesystem::path>& files, const Localize& localize);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  void changeEvent(QEvent* event) override;

 private:
  QString m_what;
};

}  // namespace mirvel::ui
