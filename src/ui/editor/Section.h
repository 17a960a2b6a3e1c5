#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/Launchd.h"
#include "core/ports/Interface.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "ui/editor/EditorContext.h"
#include "ui/editor/ProblemsView.h"

namespace mirvel {
class FieldSearch;
}

namespace mirvel::ui {

/// A part of the details or the editor of a launchd job, for a group of keys. Controls write each edit to the record of
/// the selected job at once; a section stores neither values nor the job, which a scan may replace.
class Section : public QWidget {
 public:
  /// Whether the problems of a place name their keys, as they must where the place is for several keys.
  enum class KeyNames { Omitted, Shown };

  explicit Section(const EditorContext& context) : m_context(context) {}

  /// Shows the job in the existing controls, which is no edit. Controls whose value is unchanged keep focus, cursor and
  /// selection. The section must have a parent already, since it shows and hides parts of itself.
  void configure(const Launchd& launchd) {
    withoutEdits([&] { fill(launchd); });
  }
  /// Shows only what matches the search, and what has unsaved edits; an empty search shows everything. Returns whether
  /// anything is left.
  virtual bool narrow(const FieldSearch& search);
  /// Shows the problems of the keys for which the section has a place, and removes them from the list. Those that were
  /// shown before disappear.
  void takeProblems(std::vector<FieldProblem>& problems);
  /// Makes a place for the problems of the keys for which `isOurs` returns true. The caller adds it to a layout.
  ProblemsView* makeProblemsView(std::function<bool(const std::string& key)> isOurs,
                                 KeyNames names = KeyNames::Omitted);
  /// Called when the icon of the job has changed, even if it has the same name.
  virtual void updateIcon(const Launchd& /*launchd*/) {}
  /// Checks the input before saving. Focuses on the first control whose input can't be saved and returns the reason;
  /// null if all can be saved.
  virtual std::optional<InvalidField> refuse() { return std::nullopt; }

  const EditorContext& context() const { return m_context; }
  const Localize& localize() const { return m_context.foundation.localize; }
  /// Begins an edit and returns the job to be changed; see `Editing::markJobChanged`. Null while `configure` runs, as
  /// changes of controls aren't edits then.
  Launchd* markJobChanged(Editing::Step step = Editing::Step::Begins, std::string_view field = {}) {
    return m_isFilling ? nullptr : m_context.editing.markJobChanged(step, field);
  }

 protected:
  /// Updates the controls; called by `configure`.
  virtual void fill(const Launchd& launchd) = 0;

  /// Runs a function that updates controls; see `markJobChanged`.
  template <typename Function>
  void withoutEdits(const Function& update) {
    m_isFilling = true;
    update();
    m_isFilling = false;
  }
  bool isFilling() const { return m_isFilling; }

 private:
  struct ProblemPlace {
    std::function<bool(const std::string& key)> isOurs;
    ProblemsView* view;
    KeyNames names;
  };

  const EditorContext m_context;
  std::vector<ProblemPlace> m_problemPlaces;
  bool m_isFilling = false;
};

}  // namespace mirvel::ui
