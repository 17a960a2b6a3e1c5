#pragma once

#include <QScrollArea>

#include <optional>

#include "core/app/Program.h"
#include "core/editor/JobDetails.h"
#include "ui/support/IconLoader.h"

class QLabel;
class QStackedWidget;

namespace mirvel::ui {

/// What the window shows of the selected job.
class DetailPane final : public QWidget, private DetailType {
 public:
  DetailPane(Program& program, IconLoader& icons, QWidget* parent = nullptr);
  ~DetailPane() override;

 private:
  void updateDetail() override;
  void clearDetail() override;
  void updateIcon() override;
  DetailTab detailTab() const override;
  void showDisplay() override { updateDetail(); }
  void showEdit() override { updateDetail(); }  // there is nothing yet by which a job could be edited

  QWidget* makeDetails(const JobDetails& details);
  QWidget* makeHeader(const JobDetails& details);
  QWidget* makeFooter();

  Program& m_program;
  IconLoader& m_icons;
  QStackedWidget* m_pages;
  QLabel* m_noSelection;
  QScrollArea* m_details;
  std::optional<JobDetails> m_shown;  // by the page of details, seen or not
};

}  // namespace mirvel::ui
