#include "ui/creation/NewRunScriptViewController.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "ui/creation/CreationControls.h"
#include "ui/scripts/ScriptModule.h"
#include "ui/scripts/ScriptSettings.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

NewRunScriptViewController::NewRunScriptViewController(const CreationContext& context, NewRunScript& script,
                                                       QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_script(script),
      m_choose(new ElidedButton(this)),
      m_createNew(new QPushButton(this)),
      m_save(new QPushButton(qt(context.foundation.localize.ellipsis().save()), this)),
      m_hint(new SecondaryLabel(qt(CreationTexts(context.foundation.localize).chooseOrWriteAScript()), this)),
      m_layout(new QVBoxLayout(this)) {
  m_hint->setWordWrap(true);
  m_layout->addLayout(makeButtons());
  m_layout->addWidget(m_hint);
  m_layout->addStretch();  // the text takes its place
  connect(m_choose, &QPushButton::toggled, this, &NewRunScriptViewController::choose);
  connect(m_createNew, &QPushButton::toggled, this, &NewRunScriptViewController::createNew);
  connect(m_save, &QPushButton::clicked, this, &NewRunScriptViewController::save);
  redraw();
}

QLayout* NewRunScriptViewController::makeButtons() {
  m_choose->setCheckable(true);
  m_choose->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  m_createNew->setCheckable(true);
  for (QPushButton* button : {static_cast<QPushButton*>(m_choose), m_createNew, m_save}) {
    button->setAutoDefault(false);  // Return goes on to the next page
  }
  auto* row = new QHBoxLayout;
  row->addWidget(m_choose);
  row->addWidget(m_createNew);
  row->addStretch();
  row->addWidget(m_save);
  return row;
}

void NewRunScriptViewController::makeText() {
  const Localize& localize = m_context.foundation.localize;
  m_text = makeScriptText(m_context.platform.console, localize, qt(CreationTexts(localize).script()), this);
  followLineNumbers(*m_text, m_context.foundation.defaults);
  m_text->hide();
  m_layout->insertWidget(m_layout->indexOf(m_hint), m_text, 1);
  setTabOrder(
      m_save,
      m_text->focusProxy());  // by default it would come after the buttons of the sheet, which were created earlier
  connect(m_text, &ScriptText::textChanged, this, &NewRunScriptViewController::textHasChanged);
}

void NewRunScriptViewController::redraw() {
  redrawButtons();
  const Localize& localize = m_context.foundation.localize;
  m_hint->setText(qt(m_script.isWriting() ? CreationTexts(localize).saveTheScriptToContinue()
                                          : CreationTexts(localize).chooseOrWriteAScript()));
  m_hint->setVisible(m_script.state() != NewRunScript::State::Ready);
  redrawText();
}

void NewRunScriptViewController::focusOnFirst() {
  (m_script.isWriting() ? static_cast<QWidget*>(m_text) : m_choose)->setFocus();
}

void NewRunScriptViewController::redrawButtons() {
  if (m_script.isChooseOn()) {
    m_choose->setPath(m_script.chooseTitle());
  } else {
    m_choose->setTitle(m_script.chooseTitle());
  }
  setCheckedQuietly(*m_choose, m_script.isChooseOn());
  m_createNew->setText(qt(m_script.createNewTitle()));
  setCheckedQuietly(*m_createNew, m_script.isCreateNewOn());
  m_save->setVisible(m_script.isWriting());
  m_save->setEnabled(!m_script.text().empty());
}

void NewRunScriptViewController::redrawText() {
  if (!m_script.isWriting()) {
    if (m_text) m_text->hide();
    return;
  }
  if (!m_text) makeText();
  m_text->setSyntax(m_script.syntaxType());
  const bool isNew = m_text->isHidden();
  // Setting the text would reset the insertion point and undo while the user types.
  if (!isNew && m_text->text() == m_script.text()) return;
  m_text->setText(m_script.text());
  if (const auto point = m_script.insertionPoint()) m_text->setInsertionPoint(*point);
  m_text->show();
  if (isNew && isVisible()) m_text->setFocus();
}

void NewRunScriptViewController::textHasChanged() {
  std::string text = m_text->text();
  if (text == m_script.text()) return;  // `redrawText` has set it
  m_script.setText(std::move(text));
  redraw();
}

void NewRunScriptViewController::choose() {
  m_script.choose(optionHeld());
  redraw();
}

void NewRunScriptViewController::createNew() {
  m_script.createNew();
  redraw();
}

void NewRunScriptViewController::save() {
  m_script.save();
  if (!m_script.isWriting()) m_choose->setFocus();  // the Save button has the focus and is about to be hidden
  redraw();
}

}  // namespace mirvel::ui
