#pragma once

#include <QWidget>

#include "core/locale/Localize.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace mirvel::ui {

class ScriptText;
struct TextSearch;

/// Finds and replaces text in a script. Hidden until `open`; Escape hides it again.
class FindBar final : public QWidget {
  Q_OBJECT
 public:
  /// Both must outlive the widget.
  FindBar(const Localize& localize, ScriptText& text, QWidget* parent);

  /// Shows the bar and gives its first field the focus.
  void open();
  void findNext();
  void findPrevious();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void makeFields();
  void replace();
  void replaceAll();
  TextSearch search() const;
  void show(bool isFound);

  const Localize& m_localize;
  ScriptText& m_text;
  QLineEdit* m_find = nullptr;
  QLineEdit* m_replacement = nullptr;
  QCheckBox* m_matchesCase = nullptr;
  QCheckBox* m_wholeWords = nullptr;
  QCheckBox* m_isExpression = nullptr;
  QLabel* m_message = nullptr;
};

}  // namespace mirvel::ui
