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
  explicit LaunchdViewController(const EditorContext& context);

  /// Shows the selected job. The sections that are there already are filled in place, others are added or removed;
  /// those of another job are all made again. Without a selected job nothing changes.
  void updateSections();
  /// Removes all sections.
  void dropSections();

  virtual std::vector<StackEntry> entries(const Launchd& launchd) const = 0;
  virtual Section* makeSection(StackSection section) = 0;

  const EditorContext& context() const { return m_context; }
  const Localize& localize() const { return m_context.foundation.localize; }
  std::shared_ptr<Launchd> selectedJob() const;
  QVBoxLayout& pane() { return *m_pane; }
  /// The part of the pane that scrolls.
  QWidget& content() { return *m_scrollView; }
  /// The sections, from top to bottom.
  std::vector<Section*> sections() const;

 private:
  struct Shown {
    StackSection id;
    QWidget* header;  ///< null: it has none
    Section* section;
  };

  void makeStack();
  void removeSectionsOtherThan(const std::vector<StackEntry>& entries);
  void insertSection(std::size_t position, const StackEntry& entry);
  void restoreTabOrder();

  const EditorContext m_context;
  QVBoxLayout* m_pane;
  StackScrollView* m_scrollView;
  QVBoxLayout* m_stackView = nullptr;  ///< null: no job has been shown
  std::string m_path;                  ///< of the job that is shown
  std::vector<Shown> m_shown;
};

}  // namespace mirvel::ui
