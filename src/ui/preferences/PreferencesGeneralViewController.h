#pragma once

#include <QSpinBox>

#include "core/base/Signal.h"
#include "core/preferences/PreferencesContext.h"
#include "core/preferences/RevisionsSetting.h"
#include "ui/support/PreferenceTabViewController.h"

class QPushButton;

namespace mirvel::ui {

/// The number of revisions, with its stepper. Qt's spin box would clamp a stored number that is out of its range. A
/// number is stored when the focus leaves it; Escape restores the stored one.
class RevisionsStepper final : public QSpinBox {
 public:
  /// The context must outlive it.
  explicit RevisionsStepper(const PreferencesContext& context);

 protected:
  QValidator::State validate(QString& input, int& position) const override;
  int valueFromText(const QString& text) const override;
  QString textFromValue(int value) const override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void show();
  void commit();
  void abandon();

  RevisionsSetting m_setting;
  Subscription m_changed;
};

/// The General pane.
class PreferencesGeneralViewController final : public PreferenceTabViewController {
 public:
  /// The context must outlive it.
  explicit PreferencesGeneralViewController(const PreferencesContext& context);

 private:
  QWidget* makeRevisions();
  QWidget* makeReset();
  void updateAskAgain();

  const PreferencesContext& m_context;
  QPushButton* m_askAgainButton;
  Subscription m_changed;
};

}  // namespace mirvel::ui
