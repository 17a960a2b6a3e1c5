#include "ui/editor/RunMenuButton.h"

#include <QMenu>
#include <QPointer>

#include "core/editor/RunMenu.h"
#include "core/session/Shell.h"
#include "ui/editor/RunTextField.h"
#include "ui/support/IconLoader.h"
#include "ui/support/OptionKey.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

RunMenuButton::RunMenuButton(Program& program, RunTextField& field, QWidget* parent)
    : QToolButton(parent), m_program(program), m_field(field), m_menu(new QMenu(this)) {
  const QString name = qt(program.foundation.localize.actions());
  setIcon(IconLoader::symbol("view-more"));
  setAccessibleName(name);
  setToolTip(name);
  setAutoRaise(true);
  // A menu of the button's own would add a second arrow.
  connect(this, &QToolButton::clicked, this, [this] {
    fill();
    m_menu->popup(mapToGlobal(rect().bottomLeft()));
  });
}

void RunMenuButton::fill() {
  const Localize& localize = m_program.foundation.localize;
  const RunMenu content = RunMenu::of(m_program, m_field.text(), m_field.selectedText());
  m_menu->clear();
  m_menu->addAction(qt(localize.ellipsis().choose()), this, [this] { choose(); });
  if (content.offersTest) {
    m_menu->addAction(qt(localize.test()), this, [this] { m_program.shell.segues.at(String::test)(); });
  }
  if (!content.file) return;
  m_menu->addSeparator();
  m_menu->addAction(qt(localize.revealInFinder()), this,
                    [this, file = *content.file] { m_program.platform.workspace.reveal(URL::file(file)); });
  if (!content.offersEdit) return;
  m_menu->addAction(qt(localize.editScript()).remove(QChar(0x2026)).trimmed(), this,
                    [this, file = *content.file] { m_program.shell.editScript(URL::file(file)); });
}

void RunMenuButton::choose() {
  const QPointer<RunMenuButton> self(this);  // the job may be gone before the panel is
  const auto file = m_program.platform.interface.openPanel({.showsHiddenFiles = optionHeld()});
  if (!file || !self) return;
  if (!qtPath(*file)) return m_program.platform.workspace.beep();  // no job file can hold such a name
  m_field.insertCommand(chosenCommand(m_program.repairs, *file));
}

}  // namespace mirvel::ui
