#pragma once

#include <QWidget>
#include <memory>

#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"

namespace mirvel::ui {

/// A part of the details of a launchd job, with a group of its keys. The controls of one that edits write to the live
/// record of the selected job; it keeps no values of its own.
class Section : public QWidget {
 public:
  explicit Section(Program& program) : m_program(program) {}

  /// Shows the job. To be called once the section is in its stack.
  void configure(const std::shared_ptr<Launchd>& launchd) {
    m_launchd = launchd;
    fill(*launchd);
  }

 protected:
  virtual void fill(const Launchd& launchd) = 0;

  Program& program() const { return m_program; }
  const Localize& localize() const { return m_program.foundation.localize; }
  /// Null: none is shown, or it has gone.
  std::shared_ptr<Launchd> launchd() const { return m_launchd.lock(); }

 private:
  Program& m_program;
  std::weak_ptr<Launchd> m_launchd;
};

}  // namespace mirvel::ui
