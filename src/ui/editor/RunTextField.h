#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "ui/editor/GrowingText.h"

namespace mirvel::ui {

/// A field for a command: one paragraph that grows as needed and accepts dropped files.
class RunTextField final : public GrowingText {
 public:
  explicit RunTextField(QWidget* parent = nullptr);

  std::string text() const;
  std::string selectedText() const;
  void setText(const std::string& text);
  /// Replaces the selection by a command, or appends it if nothing is selected. Takes the focus; counts as typed.
  void insertCommand(const std::string& command);
  /// Marks the text as invalid for the given reason; an empty reason removes the mark.
  void markInvalid(const QString& what);
  /// Likewise for missing files that it names; none removes the mark.
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
