#include "ui/editor/RuleRowView.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStyle>
#include <QTimeEdit>
#include <QToolButton>
#include <algorithm>

#include "core/editor/EditorTexts.h"
#include "core/locale/Dates.h"
#include "ui/support/Controls.h"
#include "ui/support/FlowLayout.h"
#include "ui/support/InvalidData.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/SymbolButton.h"

namespace mirvel::ui {

namespace {

using Scheduled::Kind;
using Scheduled::NumberProblem;
using Scheduled::RuleEditor;
using Scheduled::RuleRow;

/// What an element of a row is called, where nobody sees what stands before it.
std::string nameOf(Kind kind, std::size_t position, const Localize& localize) {
  if (position == 0) return localize.kind();
  switch (kind) {
    case Kind::repeatInterval:
      return position == 1 ? EditorTexts(localize).unit() : localize.repeatInterval();
    case Kind::everyHour:
      return localize.lowercase().minute();
    case Kind::everyDay:
      break;
    case Kind::dayOfWeek:
      if (position == 1) return localize.dayOfWeek();
      break;
    case Kind::dayOfMonth:
      if (position == 1) return localize.dayOfMonth();
      break;
    case Kind::dayOfYear:
      if (position == 1) return EditorTexts(localize).month();
      if (position == 2) return localize.dayOfMonth();
      break;
  }
  return EditorTexts(localize).time();
}

Kind kindOf(const RuleRow& row, const Criteria& kinds) {
  return static_cast<Kind>(std::find(kinds.begin(), kinds.end(), row.criteria.front()) - kinds.begin());
}

/// The locale's form of hours and minutes, if it has nothing else that Qt can't show or nobody wants to enter.
QString timeFormat(const QLocale& locale) {
  static const QRegularExpression quoted(QStringLiteral("'[^']*'"));
  static const QRegularExpression unusual(QStringLiteral("[B-GI-Zb-gi-ln-z]"));
  const QString format = locale.timeFormat(QLocale::ShortFormat);
  const QString letters = QString(format).remove(quoted).remove(QLatin1String("AP"), Qt::CaseInsensitive);
  return letters.contains(unusual) ? QStringLiteral("HH:mm") : format;
}

}  // namespace

RuleRowView::RuleRowView(const Localize& localize, QWidget* parent)
    : QWidget(parent),
      m_localize(localize),
      m_flow(new FlowLayout),
      m_untold(new SecondaryLabel(QString(), this)),
      m_remove(symbolButton("list-remove", EditorTexts(localize).removeRule(), this)),
      m_add(symbolButton("list-add", EditorTexts(localize).addRule(), this)) {
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(0, 0, 0, 0);
  auto* layout = new QHBoxLayout;
  lines->addLayout(layout);
  lines->addWidget(m_untold);
  m_untold->setWordWrap(true);
  m_untold->hide();
  layout->addLayout(m_flow, 1);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(0);
  buttons->addWidget(m_remove);
  buttons->addWidget(m_add);
  layout->addLayout(buttons);
  layout->setAlignment(buttons, Qt::AlignTop);
  connect(m_remove, &QToolButton::clicked, this, &RuleRowView::removeClicked);
  connect(m_add, &QToolButton::clicked, this, &RuleRowView::addClicked);
}

void RuleRowView::showRow(const RuleEditor& editor, std::size_t row, std::size_t from) {
  while (m_elements.size() > from) {
    if (m_elements.back() == m_number) m_number = nullptr;
    delete m_elements.back();
    m_elements.pop_back();
  }
  const RuleRow& content = editor.row(row);
  const Kind kind = kindOf(content, editor.controller().criteria());
  for (std::size_t position = m_elements.size(); position < content.criteria.size(); ++position) {
    QWidget* element = makeElement(editor, row, position);
    element->setAccessibleName(qt(nameOf(kind, position, m_localize)));
    m_elements.push_back(element);
    m_flow->addWidget(element);
    element->show();
  }
  showMark();
}

QWidget* RuleRowView::makeElement(const RuleEditor& editor, std::size_t row, std::size_t position) {
  const RuleRow& content = editor.row(row);
  const Scheduled::DisplayValue& value = content.displayValues[position];
  const bool isLast = position + 1 == content.criteria.size();  // a minute has the word for it behind it
  if (const auto* field = std::get_if<Scheduled::NumberField>(&value)) return makeNumberField(field->text, !isLast);
  if (const auto* picker = std::get_if<Scheduled::TimePicker>(&value)) return makeTimePicker(picker->time);
  const auto& text = std::get<std::string>(value);
  const Criteria& choices = editor.choices(row, position);
  if (choices.size() > 1) return makePopUp(choices, text, position);
  auto* word = new QLabel(qt(text), this);
  word->setTextFormat(Qt::PlainText);
  return word;
}

QWidget* RuleRowView::makePopUp(const Criteria& choices, const std::string& chosen, std::size_t position) {
  constexpr int allMonths = 12;
  auto* popUp = new QComboBox(this);
  for (const auto& criterion : choices) popUp->addItem(qt(criterion->name()));
  popUp->setCurrentIndex(popUp->findText(qt(chosen), Qt::MatchExactly | Qt::MatchCaseSensitive));
  popUp->setMaxVisibleItems(allMonths);
  popUp->setMinimumWidth(popUp->fontMetrics().averageCharWidth() * 8);
  guardFromWheel(*popUp);
  connect(popUp, &QComboBox::currentIndexChanged, this,
          [this, position](int child) { Q_EMIT childChosen(position, child); });
  return popUp;
}

QWidget* RuleRowView::makeNumberField(const std::string& text, bool isMinute) {
  const int shownCharacters = isMinute ? 5 : 9;
  auto* field = new QLineEdit(qt(text), this);
  field->setFixedWidth(field->fontMetrics().horizontalAdvance(QString(shownCharacters, QLatin1Char('0'))));
  field->setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading) | Qt::AlignAbsolute);
  // Where nothing is entered there is nothing else to mark.
  field->setPlaceholderText(QStringLiteral("?"));
  connect(field, &QLineEdit::textChanged, this, &RuleRowView::numberEdited);
  m_number = field;
  return field;
}

QWidget* RuleRowView::makeTimePicker(Scheduled::Time time) {
  auto* picker = new QTimeEdit(QTime(Date::hour(time), Date::minute(time)), this);
  picker->setLocale(QLocale(qt(m_localize.timeLocale())));
  // In a right-to-left window Qt turns the sections around, though text does so by itself as far as it should.
  picker->setLayoutDirection(Qt::LeftToRight);
  picker->setDisplayFormat(timeFormat(picker->locale()));
  picker->unsetLayoutDirection();
  guardFromWheel(*picker);
  connect(picker, &QTimeEdit::timeChanged, this, &RuleRowView::timeEdited);
  return picker;
}

void RuleRowView::mark(std::optional<NumberProblem> problem) {
  if (problem == m_problem) return;
  m_problem = problem;
  showMark();
}

void RuleRowView::showMark() {
  if (!m_number) return;
  const QString what = m_problem ? qt(text(*m_problem, m_localize)) : QString();
  markInvalidData(*m_number, what);
  m_number->setToolTip(what);
}

void RuleRowView::showUntold(const QString& text) {
  m_untold->setText(text);
  m_untold->setVisible(!text.isEmpty());
}

void RuleRowView::focusOnNumber() {
  if (!m_number) return;
  m_number->setFocus();
  m_number->selectAll();
}

std::vector<QWidget*> RuleRowView::controls() const {
  std::vector<QWidget*> result;
  for (QWidget* element : m_elements) {
    if (element->focusPolicy() != Qt::NoFocus) result.push_back(element);
  }
  result.push_back(m_remove);
  result.push_back(m_add);
  return result;
}

void RuleRowView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) showMark();
  QWidget::changeEvent(event);
}

}  // namespace mirvel::ui
