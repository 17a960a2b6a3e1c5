#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "core/editor/SectionStack.h"
#include "ui/editor/Section.h"
#include "ui/editor/StackScrollView.h"

class QVBoxLayout;

namespace mirvel::ui {

/// A stack of sections about the selected launchd job.
class LaunchdViewController : public QWidget {
 protected:
  explicit LaunchdViewController(Program& program);

  /// Shows the selected job anew; without one, what was shown stays.
  void rebuildSections();
  /// Lets go of the job.
  void dropSections();

  virtual std::vector<StackEntry> entries(const Launchd& launchd) const = 0;
  /// The section with which an entry is shown.
  virtual Section* makeSection(StackSection section) = 0;

  Program& program() const { return m_program; }
  const Localize& localize() const { return m_program.foundation.localize; }
  std::shared_ptr<Launchd> selectedJob() const;
  QVBoxLayout& pane() { return *m_pane; }
  /// What scrolls in the pane.
  QWidget& content() { return *m_scrollView; }
  /// Those that are shown, from the first to the last.
  const std::vector<Section*>& sections() const { return m_sections; }

 private:
  void addSection(Section& section, const std::shared_ptr<Launchd>& launchd, const std::optional<std::string>& title);

  Program& m_program;
  QVBoxLayout* m_pane;
  StackScrollView* m_scrollView;
  QVBoxLayout* m_stackView = nullptr;
  std::vector<Section*> m_sections;
};

}  // namespace mirvel::ui
