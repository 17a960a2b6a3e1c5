#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <string_view>

#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/ports/InvalidField.h"

namespace mirvel::ui {

/// A part of the details of a launchd job, with a group of its keys. The controls of one that edits write to the live
/// record of the selected job; it keeps no values of its own.
class Section : public QWidget {
 public:
  explicit Section(Program& program) : m_program(program) {}

  /// Shows the job. To be called once the section is in its stack.
  void configure(const std::shared_ptr<Launchd>& launchd) {
    m_launchd = launchd;
    m_isFilling = true;
    fill(*launchd);
    m_isFilling = false;
  }
  /// The job has another icon.
  virtual void updateIcon(const Launchd& /*launchd*/) {}
  /// The control that keeps the job from being saved, which then gets the keys. None: all can be saved.
  virtual std::optional<InvalidField> refuse() { return std::nullopt; }

 protected:
  virtual void fill(const Launchd& launchd) = 0;

  Program& program() const { return m_program; }
  const Localize& localize() const { return m_program.foundation.localize; }
  /// Whether a control that changes shows what it is filled with, and isn't the user's doing.
  bool isFilling() const { return m_isFilling; }
  /// The job to write a change of a control to; see `Editing::markJobChanged`. Null too while the section is filled.
  Launchd* markJobChanged(std::string_view field = {}) {
    return m_isFilling ? nullptr : m_program.editing.markJobChanged(field);
  }
  /// Null: none is shown, or it has gone.
  std::shared_ptr<Launchd> launchd() const { return m_launchd.lock(); }

 private:
  Program& m_program;
  std::weak_ptr<Launchd> m_launchd;
  bool m_isFilling = false;
};

}  // namespace mirvel::ui
