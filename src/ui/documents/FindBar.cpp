#include "ui/documents/FindBar.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/documents/ScriptTexts.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/Controls.h"
#include "ui/support/FlowLayout.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

FindBar::FindBar(const Localize& localize, ScriptText& text, QWidget* parent)
    : QWidget(parent), m_localize(localize), m_text(text) {
  makeFields();
  const ScriptTexts texts(localize);
  m_message = new QLabel(this);
  m_message->setObjectName(QStringLiteral("message"));
  // The order of their creation is that of the Tab key.
  auto* previous = new QPushButton(qt(texts.findPrevious()), this);
  auto* next = new QPushButton(qt(texts.findNext()), this);
  auto* replaceOne = new QPushButton(qt(texts.replace()), this);
  auto* replaceEach = new QPushButton(qt(texts.replaceAll()), this);
  replaceEach->setObjectName(QStringLiteral("replaceAll"));
  auto* closing = new QPushButton(qt(texts.closeFindBar()), this);
  connect(replaceOne, &QPushButton::clicked, this, &FindBar::replace);
  connect(replaceEach, &QPushButton::clicked, this, &FindBar::replaceAll);
  connect(closing, &QPushButton::clicked, this, [this] {
    hide();
    m_text.setFocus();
  });
  connect(next, &QPushButton::clicked, this, &FindBar::findNext);
  connect(previous, &QPushButton::clicked, this, &FindBar::findPrevious);
  auto* options = new QWidget(this);
  auto* flow = new FlowLayout(options);
  for (QWidget* each : {static_cast<QWidget*>(m_matchesCase), static_cast<QWidget*>(m_wholeWords),
                        static_cast<QWidget*>(m_isExpression), static_cast<QWidget*>(m_message)}) {
    flow->addWidget(each);
  }
  auto* layout = new QGridLayout(this);
  layout->addWidget(m_find, 0, 0);
  layout->addWidget(previous, 0, 1);
  layout->addWidget(next, 0, 2);
  layout->addWidget(m_replacement, 1, 0);
  layout->addWidget(replaceOne, 1, 1);
  layout->addWidget(replaceEach, 1, 2);
  layout->addWidget(options, 2, 0, 1, 2);
  layout->addWidget(closing, 2, 2);
  layout->setColumnStretch(0, 1);
  hide();
}

void FindBar::makeFields() {
  const ScriptTexts texts(m_localize);
  const auto field = [&](const std::string& title) {
    auto* result = new QLineEdit(this);
    result->setPlaceholderText(qt(title));
    result->setAccessibleName(qt(title));
    result->setClearButtonEnabled(true);
    nameButtons(*result, qt(title));
    return result;
  };
  m_find = field(texts.findField());
  m_find->setObjectName(QStringLiteral("find"));
  m_replacement = field(texts.replaceField());
  m_replacement->setObjectName(QStringLiteral("replacement"));
  m_matchesCase = new CheckBox(qt(texts.matchCase()), this);
  m_wholeWords = new CheckBox(qt(texts.wholeWords()), this);
  m_isExpression = new CheckBox(qt(texts.regularExpression()), this);
  connect(m_find, &QLineEdit::returnPressed, this, &FindBar::findNext);
  connect(m_find, &QLineEdit::textEdited, this, [this] { m_message->clear(); });
  connect(m_replacement, &QLineEdit::returnPressed, this, &FindBar::replace);
}

void FindBar::open() {
  setVisible(true);
  m_find->setFocus(Qt::ShortcutFocusReason);
  m_find->selectAll();
}

TextSearch FindBar::search() const {
  return {.text = utf8(m_find->text()),
          .matchesCase = m_matchesCase->isChecked(),
          .wholeWords = m_wholeWords->isChecked(),
          .isExpression = m_isExpression->isChecked()};
}

void FindBar::show(bool isFound) {
  m_message->setText(isFound ? QString() : qt(ScriptTexts(m_localize).notFound()));
}

void FindBar::findNext() {
  show(m_text.find(search()));
}

void FindBar::findPrevious() {
  show(m_text.find(search(), true));
}

void FindBar::replace() {
  show(m_text.replace(search(), utf8(m_replacement->text())));
}

void FindBar::replaceAll() {
  const int count = m_text.replaceAll(search(), utf8(m_replacement->text()));
  m_message->setText(qt(ScriptTexts(m_localize).replaced(count)));
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  hide();
  m_text.setFocus();
}

}  // namespace mirvel::ui
