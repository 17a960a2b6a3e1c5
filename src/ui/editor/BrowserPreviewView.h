#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <optional>

#include "core/editor/Browser.h"
#include "ui/editor/BrowserModel.h"
#include "ui/editor/EditorContext.h"

class QCheckBox;
class QLineEdit;
class QScrollArea;
class QVBoxLayout;

namespace mirvel::ui {

class EditTableView;
class ElidedLabel;
class ValueText;

/// The value of the selected item, in the place of a further column. Writes each keystroke to the item that it was made
/// for. By keyboard: Return goes back to the row, Escape also restores the text.
class BrowserPreviewView final : public QWidget {
 public:
  /// The browser outlives the view.
  BrowserPreviewView(Browser& browser, const EditorContext& context, BrowserModel::Access access);
  ~BrowserPreviewView() override;

  /// Called after the user has changed the value.
  std::function<void()> changed;
  /// Called when the focus should go back to the row of the item.
  std::function<void()> left;

  /// Shows a value, which is no edit, or nothing. The control of an item that is shown already keeps focus and cursor.
  void setPreview(const std::optional<BrowserPreview>& preview);
  /// The focusable control; null if nothing is shown.
  QWidget* control() const { return m_control; }
  /// The height of the name above the value, which is that of the headers of the columns; 0 for no name.
  void setHeaderHeight(int height);
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  bool isMadeFor(const BrowserPreview& preview) const;
  void make();
  void makeReadOnly(QVBoxLayout& layout);
  void makeBox(QVBoxLayout& layout);
  void makeText(QVBoxLayout& layout);
  void makeChoices(QVBoxLayout& layout, QLineEdit& text);
  void makeStrings(QVBoxLayout& layout);
  void fill();
  void fillText();
  void mark();
  void enter(const QString& text);
  void wasChanged();
  bool pressed(int key, bool isOverride);

  Browser& m_browser;
  const EditorContext m_context;
  const BrowserModel::Access m_access;
  std::optional<BrowserPreview> m_shown;
  ElidedLabel* m_title;
  QScrollArea* m_area;
  QWidget* m_control = nullptr;  ///< that of the following which is used
  QCheckBox* m_box = nullptr;
  QLineEdit* m_text = nullptr;  ///< on its own, or that of `m_control`
  EditTableView* m_strings = nullptr;
  ValueText* m_description = nullptr;
  QString m_original;  ///< the text before it was edited
  bool m_isFilling = false;
};

}  // namespace mirvel::ui
