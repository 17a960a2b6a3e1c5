#pragma once

#include <memory>
#include <string>

#include "core/files/URL.h"
#include "ui/editor/EditorContext.h"
#include "ui/support/SheetViewController.h"

class QDialogButtonBox;
class QPushButton;

namespace mirvel {
class Job;
class LoginItem;
struct InfoText;
}  // namespace mirvel

namespace mirvel::ui {

class ElidedLabel;
class ScriptText;
class SecondaryLabel;

/// Opens the information sheet for a job on the window: the one of its kind.
void openInfoSheet(const EditorContext& context, const std::shared_ptr<Job>& job, QWidget& window);

/// A sheet with the path of a job's file, its text, a status line and a button that closes the sheet.
class InfoTextSheet : public SheetViewController {
 public:
  /// Of a job whose text can only be read. A URL that isn't a file isn't shown.
  InfoTextSheet(const EditorContext& context, QWidget& window, const char* frameName, const InfoText& content,
                const URL& url);

 protected:
  InfoTextSheet(const EditorContext& context, QWidget& window, const char* frameName, const URL& url,
                const std::string& textName);

  const EditorContext& context() const { return m_context; }
  void setTitle(const std::string& title);
  ScriptText& text() { return *m_text; }
  QDialogButtonBox& buttons() { return *m_buttons; }
  QPushButton& closeButton() { return *m_closeButton; }
  /// An empty status takes no space. A problem is shown in the colour of invalid input.
  void showStatus(const std::string& status, bool isProblem);

  void changeEvent(QEvent* event) override;

 private:
  const EditorContext m_context;
  ElidedLabel* m_title = nullptr;
  ScriptText* m_text = nullptr;
  SecondaryLabel* m_status = nullptr;
  QDialogButtonBox* m_buttons = nullptr;
  QPushButton* m_closeButton = nullptr;
  bool m_isProblem = false;
};

/// The sheet of a login item.
class InfoLoginItemSheet final : public SheetViewController {
 public:
  InfoLoginItemSheet(const EditorContext& context, QWidget& window, const LoginItem& item);
};

}  // namespace mirvel::ui
