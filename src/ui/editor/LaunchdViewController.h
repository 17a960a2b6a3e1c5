#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "core/editor/SectionStack.h"
#include "ui/editor/Section.h"
#include "ui/editor/SectionGrid.h"

class QHBoxLayout;
class QVBoxLayout;

namespace mirvel::ui {

/// A scrollable stack of sections about the selected launchd job.
class LaunchdViewController : public QWidget {
 protected:
  explicit LaunchdViewController(const EditorContext& context);

  /// Shows the selected job. Existing sections are refilled in place, and others are added or removed as needed. If
  /// another job was shown before, all sections are recreated. Does nothing if no launchd job is selected.
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
  /// Shows only the sections and fields that match a search, and those with unsaved edits; an empty search shows all.
  /// Returns whether anything is left.
  bool narrow(const FieldSearch& search);
  /// The sections, from top to bottom.
  std::vector<Section*> sections() const;

 private:
  struct Shown {
    StackSection id;
    std::string title;
    QWidget* header;  ///< null if the section has no title
    Section* section;
  };

  void makeStack();
  void removeSectionsOtherThan(const std::vector<StackEntry>& entries);
  void insertSection(std::size_t position, const StackEntry& entry);
  void restoreTabOrder();
  bool isLeft(const Shown& shown, const FieldSearch& search) const;

  const EditorContext m_context;
  QVBoxLayout* m_pane;
  StackScrollView* m_scrollView;
  QVBoxLayout* m_stackView = nullptr;  ///< null while no job is shown
  std::string m_path;                  ///< of the shown job
  std::vector<Shown> m_shown;
};

/// The row of buttons below the details, separated by a line.
class ButtonBar final : public QWidget {
 public:
  explicit ButtonBar(QWidget* parent = nullptr);

  QHBoxLayout& row() { return *m_row; }

 private:
  QHBoxLayout* m_row;
};

}  // namespace mirvel::ui
