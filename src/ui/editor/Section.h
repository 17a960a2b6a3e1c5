#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <string_view>

#include "core/catalogue/Launchd.h"
#include "core/ports/Interface.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "ui/editor/EditorContext.h"

namespace mirvel::ui {

/// A part of the details of a launchd job, with a group of its keys. The controls of the editor write to the live
/// record of the selected job; a section keeps no values of its own.
class Section : public QWidget {
 public:
  explicit Section(const EditorContext& context) : m_context(context) {}

  /// Shows the job, in the controls that are there: what hasn't changed keeps its focus, cursor and selection. To be
  /// called first when the section is in its stack.
  void configure(const std::shared_ptr<Launchd>& launchd) {
    m_launchd = launchd;
    m_isFilling = true;
    fill(*launchd);
    m_isFilling = false;
  }
  /// The job has another icon.
  virtual void updateIcon(const Launchd& /*launchd*/) {}
  /// Focuses on the first control that can't be saved, and returns why. None: all can be saved.
  virtual std::optional<InvalidField> refuse() { return std::nullopt; }

  const EditorContext& context() const { return m_context; }
  const Localize& localize() const { return m_context.foundation.localize; }
  /// The job to which a change of a control is to be written; see `Editing::markJobChanged`. Null also while the
  /// section is filled: that is no edit.
  Launchd* markJobChanged(Editing::Step step = Editing::Step::Begins, std::string_view field = {}) {
    return m_isFilling ? nullptr : m_context.editing.markJobChanged(step, field);
  }
  /// The job that is shown; null if there is none, or it is gone.
  std::shared_ptr<Launchd> launchd() const { return m_launchd.lock(); }

 protected:
  virtual void fill(const Launchd& launchd) = 0;

  bool isFilling() const { return m_isFilling; }

 private:
  const EditorContext m_context;
  std::weak_ptr<Launchd> m_launchd;
  bool m_isFilling = false;
};

}  // namespace mirvel::ui
