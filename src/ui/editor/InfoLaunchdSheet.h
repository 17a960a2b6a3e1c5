#pragma once

#include <memory>

#include "core/editor/InfoLaunchd.h"
#include "ui/editor/InfoTextSheet.h"

class QSessionManager;

namespace mirvel::ui {

/// The sheet with the property list of a launchd job as text, which can be edited. Control-Return changes the job.
class InfoLaunchdSheet final : public InfoTextSheet {
 public:
  InfoLaunchdSheet(const EditorContext& context, QWidget& window, std::shared_ptr<Launchd> job);

  /// Asks first if text would be lost.
  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeChangeButton();
  void textHasChanged();
  void change();
  bool mayClose();
  void askBeforeSessionEnds(QSessionManager& session);

  InfoLaunchd m_info;
  QPushButton* m_changeButton = nullptr;
  bool m_isAsking = false;
};

}  // namespace mirvel::ui
