#include "ui/editor/RunMenuButton.h"

#include <QMenu>

#include "core/editor/EditorTexts.h"
#include "core/editor/RunMenu.h"
#include "core/locale/Localize.h"
#include "core/session/Shell.h"
#include "ui/editor/ChooseFile.h"
#include "ui/editor/RunTextField.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

RunMenuButton::RunMenuButton(const Platform& platform, const Shell& shell, const CommandRepairs& repairs,
                             const Localize& localize, RunTextField& field)
    : m_platform(platform),
      m_shell(shell),
      m_repairs(repairs),
      m_localize(localize),
      m_field(field),
      m_menu(new QMenu(this)) {
  const QString name = qt(EditorTexts(localize).actions());
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
  const RunMenu content = RunMenu::of(m_shell, m_repairs, m_field.text(), m_field.selectedText());
  m_menu->clear();
  m_menu->addAction(qt(m_localize.ellipsis().choose()), this, [this] { choose(); });
  if (content.offersTest) {
    m_menu->addAction(qt(EditorTexts(m_localize).test()), this, [this] { m_shell.segues.at(String::test)(); });
  }
  if (!content.file) return;
  m_menu->addSeparator();
  m_menu->addAction(qt(m_localize.revealInFinder()), this,
                    [this, file = *content.file] { m_platform.workspace.reveal(URL::file(file)); });
  if (!content.offersEdit) return;
  m_menu->addAction(qt(EditorTexts(m_localize).editScript()).remove(QChar(0x2026)).trimmed(), this,
                    [this, file = *content.file] { m_shell.editScript(URL::file(file)); });
}

void RunMenuButton::choose() {
  const auto file = chooseFile(*this, m_platform, {.showsHiddenFiles = optionHeld()});
  if (file) m_field.insertCommand(chosenCommand(m_repairs, *file));
}

}  // namespace mirvel::ui
