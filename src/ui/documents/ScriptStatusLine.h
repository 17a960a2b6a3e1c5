#pragma once

#include <QWidget>
#include <functional>

#include "ui/documents/ScriptContext.h"

class QMenu;
class QToolButton;

namespace mirvel {
class ScriptDocument;
}

namespace mirvel::ui {

class ElidedLabel;
class ScriptText;
class SecondaryLabel;

/// The line below a script: a message, the language, the line ends, the encoding, and the position of the insertion
/// point. The first three can be changed by their menus.
class ScriptStatusLine final : public QWidget {
 public:
  /// All must outlive the widget.
  ScriptStatusLine(const ScriptContext& context, ScriptDocument& document, ScriptText& text, QWidget* parent);

  void refresh();
  /// Shows a message until the next one; "Loading…" and "Saving…" hide it meanwhile.
  void setMessage(const QString& message);

 private:
  QToolButton* addMenu(const std::string& title, const std::function<void(QMenu&)>& fill);
  void showPosition();

  const ScriptContext& m_context;
  ScriptDocument& m_document;
  ScriptText& m_text;
  ElidedLabel* m_message = nullptr;
  QString m_lastMessage;
  QToolButton* m_language = nullptr;
  QToolButton* m_lineEnds = nullptr;
  QToolButton* m_encoding = nullptr;
  SecondaryLabel* m_position = nullptr;
};

}  // namespace mirvel::ui
