#pragma once

#include <QString>
#include <QToolButton>
#include <filesystem>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/session/Platform.h"
#include "ui/editor/GrowingText.h"

namespace mirvel {
class CommandRepairs;
struct Shell;
}  // namespace mirvel

namespace mirvel::ui {

/// A field for a command: one paragraph that grows as needed and accepts dropped files.
class RunTextField final : public GrowingText {
 public:
  explicit RunTextField(QWidget* parent = nullptr);

  std::string text() const;
  std::string selectedText() const;
  /// A text that doesn't fit into a line is shown shortened, and can't be changed.
  void setText(const std::string& text);
  /// Replaces the selection by a command, or appends it if nothing is selected, as if typed. Gets the focus.
  /// Does nothing if the text can't be changed.
  void insertCommand(const std::string& command);
  /// Whether the text is being changed by `insertCommand`, rather than by typing.
  bool isInsertingCommand() const { return m_isInsertingCommand; }
  /// Marks the text as invalid for the given reason; an empty reason removes the mark.
  void markInvalid(const QString& reason);
  /// Marks the text because it names missing files; an empty list removes the mark.
  void markMissing(const std::vector<std::filesystem::path>& files, const Localize& localize);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  void changeEvent(QEvent* event) override;

 private:
  QString m_invalidReason;
  bool m_isInsertingCommand = false;
};

/// The menu button beside a field for a command: chooses a file, tests the command, and reveals or edits the file that
/// the command names. Changes the field only by inserting commands.
class RunMenuButton final : public QToolButton {
 public:
  /// All arguments outlive it.
  RunMenuButton(const Platform& platform, const Shell& shell, const CommandRepairs& repairs, const Localize& localize,
                RunTextField& field);

 private:
  void fill();
  void choose();

  const Platform& m_platform;
  const Shell& m_shell;
  const CommandRepairs& m_repairs;
  const Localize& m_localize;
  RunTextField& m_field;
  QMenu* m_menu;
};

}  // namespace mirvel::ui
