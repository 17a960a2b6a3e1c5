#include "ui/documents/ScriptStatusLine.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QStyle>
#include <QToolButton>

#include "core/documents/ScriptDocument.h"
#include "core/documents/ScriptTexts.h"
#include "core/session/Foundation.h"
#include "ui/documents/DocumentMenus.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

ScriptStatusLine::ScriptStatusLine(const ScriptContext& context, ScriptDocument& document, ScriptText& text,
                                   QWidget* parent)
    : QWidget(parent), m_context(context), m_document(document), m_text(text) {
  const Localize& localize = context.foundation.localize;
  const ScriptTexts texts(localize);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(style()->pixelMetric(QStyle::PM_LayoutLeftMargin), 0,
                             style()->pixelMetric(QStyle::PM_LayoutRightMargin), 0);
  m_message = new ElidedLabel(this);
  layout->addWidget(m_message, 1);
  m_language = addMenu(texts.language(), [this](QMenu& menu) { fillLanguages(menu, m_document, m_text); });
  m_lineEnds = addMenu(texts.lineEnds(), [&localize, this](QMenu& menu) { fillLineEnds(menu, m_document, localize); });
  m_encoding = addMenu(texts.encoding(), [&localize, this](QMenu& menu) {
    fillReopenWith(*menu.addMenu(qt(ScriptTexts(localize).reopenWith())), m_document, localize);
    QMenu* const saving = menu.addMenu(qt(ScriptTexts(localize).saveWith()));
    fillSaveWith(*saving, m_document, localize);
    saving->setEnabled(m_document.canSave());
  });
  m_position = new SecondaryLabel(QString(), this);
  layout->addWidget(m_position);
  connect(&text, &ScriptText::moved, this, &ScriptStatusLine::showPosition);
  connect(&text, &ScriptText::textChanged, this, &ScriptStatusLine::showPosition);
}

QToolButton* ScriptStatusLine::addMenu(const std::string& title, const std::function<void(QMenu&)>& fill) {
  auto* button = new QToolButton(this);
  button->setAutoRaise(true);
  button->setPopupMode(QToolButton::InstantPopup);
  button->setToolTip(qt(title));
  button->setFocusPolicy(Qt::TabFocus);
  auto* menu = new QMenu(button);
  menu->setAccessibleName(qt(title));
  connect(menu, &QMenu::aboutToShow, this, [menu, fill] {
    menu->clear();
    fill(*menu);
  });
  button->setMenu(menu);
  layout()->addWidget(button);
  return button;
}

void ScriptStatusLine::setMessage(const QString& message) {
  m_lastMessage = message;
  m_message->setFullText(message);
}

void ScriptStatusLine::refresh() {
  const Localize& localize = m_context.foundation.localize;
  const ScriptTexts texts(localize);
  const auto show = [](QToolButton& button, const std::string& value) {
    button.setText(qt(value));
    button.setAccessibleName(button.toolTip() + QStringLiteral(": ") + qt(value));
  };
  show(*m_language, languageTitle(m_document.syntax(), localize));
  show(*m_lineEnds, lineEndTitle(m_document.form().lineEnd, localize));
  show(*m_encoding, titleOf(m_document.encoding(), localize));
  m_lineEnds->setEnabled(m_document.canSave() && !m_document.isLarge());
  if (m_document.isLoading()) {
    m_message->setFullText(qt(texts.loading()));
  } else if (m_document.isSaving()) {
    m_message->setFullText(qt(texts.saving()));
  } else {
    m_message->setFullText(m_lastMessage);
  }
  showPosition();
}

void ScriptStatusLine::showPosition() {
  if (m_document.isLoading()) return m_position->setText({});
  const TextPosition position = m_text.position();
  m_position->setText(qt(ScriptTexts(m_context.foundation.localize).position(position.line, position.column)));
}

}  // namespace mirvel::ui
