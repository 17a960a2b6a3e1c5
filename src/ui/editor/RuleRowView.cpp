#include "ui/editor/RuleRowView.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QStyle>
#include <QTimeEdit>
#include <QToolButton>
#include <algorithm>

#include "core/editor/EditorTexts.h"
#include "core/locale/Dates.h"
#include "ui/support/Controls.h"
#include "ui/support/FlowLayout.h"
#include "ui/support/Labels.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

using Scheduled::DisplayValue;
using RuleKind = Scheduled::Kind;
using Scheduled::NumberField;
using Scheduled::NumberProblem;
using Scheduled::RuleEditor;
using Scheduled::RuleRow;
using Scheduled::TimePicker;

/// The accessible name of an element.
std::string nameOf(RuleKind kind, std::size_t position, const Localize& localize) {
  if (position == 0) return localize.kind();
  switch (kind) {
    case RuleKind::repeatInterval:
      return position == 1 ? EditorTexts(localize).unit() : localize.repeatInterval();
    case RuleKind::everyHour:
      return localize.lowercase().minute();
    case RuleKind::everyDay:
      break;
    case RuleKind::dayOfWeek:
      if (position == 1) return localize.dayOfWeek();
      break;
    case RuleKind::dayOfMonth:
      if (position == 1) return localize.dayOfMonth();
      break;
    case RuleKind::dayOfYear:
      if (position == 1) return EditorTexts(localize).month();
      if (position == 2) return localize.dayOfMonth();
      break;
  }
  return EditorTexts(localize).time();
}

RuleKind kindOf(const RuleRow& row, const Criteria& kinds) {
  return static_cast<RuleKind>(std::find(kinds.begin(), kinds.end(), row.criteria.front()) - kinds.begin());
}

/// The locale's format of hours and minutes, unless it contains parts that Qt can't display, such as the period of the
/// day in Chinese, or seconds.
QString timeFormat(const QLocale& locale) {
  static const QRegularExpression quoted(QStringLiteral("'[^']*'"));
  static const QRegularExpression unusual(QStringLiteral("[B-GI-Zb-gi-ln-z]"));
  const QString format = locale.timeFormat(QLocale::ShortFormat);
  const QString letters = QString(format).remove(quoted).remove(QLatin1String("AP"), Qt::CaseInsensitive);
  return letters.contains(unusual) ? QStringLiteral("HH:mm") : format;
}

QTime qtTime(Scheduled::Time time) {
  return {Date::hour(time), Date::minute(time)};
}

int itemOf(const QComboBox& popUp, const std::string& choice) {
  return popUp.findText(qt(choice), Qt::MatchExactly | Qt::MatchCaseSensitive);
}

/// Whether an element is the control of a value of this type, whatever the choices before it.
bool isControlFor(const QWidget& element, const DisplayValue& value) {
  if (std::holds_alternative<NumberField>(value)) return qobject_cast<const QLineEdit*>(&element);
  return std::holds_alternative<TimePicker>(value) && qobject_cast<const QTimeEdit*>(&element);
}

/// Whether an element shows a value. Words always do: they change only along with their criterion.
bool showsValue(const QWidget& element, const DisplayValue& value) {
  if (const auto* const field = qobject_cast<const QLineEdit*>(&element)) {
    return utf8(field->text()) == std::get<NumberField>(value).text;
  }
  if (const auto* const picker = qobject_cast<const QTimeEdit*>(&element)) {
    return picker->time() == qtTime(std::get<TimePicker>(value).time);
  }
  const auto* const popUp = qobject_cast<const QComboBox*>(&element);
  return !popUp || popUp->currentIndex() == itemOf(*popUp, std::get<std::string>(value));
}

void showValue(QWidget& element, const DisplayValue& value) {
  if (showsValue(element, value)) return;
  if (auto* const field = qobject_cast<QLineEdit*>(&element)) {
    replaceText(*field, qt(std::get<NumberField>(value).text));
  } else if (auto* const picker = qobject_cast<QTimeEdit*>(&element)) {
    picker->setTime(qtTime(std::get<TimePicker>(value).time));
  } else if (auto* const popUp = qobject_cast<QComboBox*>(&element)) {
    popUp->setCurrentIndex(itemOf(*popUp, std::get<std::string>(value)));
  }
}

}  // namespace

RuleRowView::RuleRowView(const Localize& localize, QWidget* parent)
    : QWidget(parent),
      m_localize(localize),
      m_flow(new FlowLayout),
      m_unshownEntries(new SecondaryLabel(QString(), this)),
      m_remove(symbolButton("list-remove", EditorTexts(localize).removeRule(), this)),
      m_add(symbolButton("list-add", EditorTexts(localize).addRule(), this)) {
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(0, 0, 0, 0);
  auto* layout = new QHBoxLayout;
  lines->addLayout(layout);
  lines->addWidget(m_unshownEntries);
  m_unshownEntries->setWordWrap(true);
  m_unshownEntries->hide();
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

void RuleRowView::showRow(const RuleEditor& editor, std::size_t row) {
  const QSignalBlocker noEdit(this);
  const RuleRow& content = editor.row(row);
  const auto [firstOther, end] =
      std::mismatch(m_criteria.begin(), m_criteria.end(), content.criteria.begin(), content.criteria.end());
  const auto common = static_cast<std::size_t>(firstOther - m_criteria.begin());
  // The first pop-up with another choice has the same items, and is kept as well; so are a number or time below it.
  std::size_t kept = std::min(common + 1, content.criteria.size());
  while (common > 0 && kept < std::min(m_elements.size(), content.criteria.size()) &&
         isControlFor(*m_elements[kept], content.displayValues[kept])) {
    ++kept;
  }
  removeElementsFrom(kept);
  for (std::size_t position = 0; position < m_elements.size(); ++position) {
    showValue(*m_elements[position], content.displayValues[position]);
  }
  const RuleKind kind = kindOf(content, editor.controller().criteria());
  for (std::size_t position = m_elements.size(); position < content.criteria.size(); ++position) {
    QWidget* element = makeElement(editor, row, position);
    element->setAccessibleName(qt(nameOf(kind, position, m_localize)));
    m_elements.push_back(element);
    m_flow->addWidget(element);
    element->show();
  }
  m_criteria = content.criteria;
  showMark();
}

void RuleRowView::removeElementsFrom(std::size_t position) {
  while (m_elements.size() > position) {
    if (m_elements.back() == m_number) m_number = nullptr;
    m_flow->removeWidget(m_elements.back());
    discard(m_elements.back());
    m_elements.pop_back();
  }
}

bool RuleRowView::shows(const RuleRow& content) const {
  if (m_criteria != content.criteria) return false;
  for (std::size_t position = 0; position < m_elements.size(); ++position) {
    if (!showsValue(*m_elements[position], content.displayValues[position])) return false;
  }
  return true;
}

QWidget* RuleRowView::makeElement(const RuleEditor& editor, std::size_t row, std::size_t position) {
  const RuleRow& content = editor.row(row);
  const DisplayValue& value = content.displayValues[position];
  const bool isLast = position + 1 == content.criteria.size();  // only a minute is followed by a word
  if (const auto* field = std::get_if<NumberField>(&value)) return makeNumberField(field->text, !isLast);
  if (const auto* picker = std::get_if<TimePicker>(&value)) return makeTimePicker(picker->time);
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
  popUp->setCurrentIndex(itemOf(*popUp, chosen));
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
  // An empty field has no other text that could be marked as invalid.
  field->setPlaceholderText(QStringLiteral("?"));
  connect(field, &QLineEdit::textChanged, this, &RuleRowView::numberEdited);
  m_number = field;
  return field;
}

QWidget* RuleRowView::makeTimePicker(Scheduled::Time time) {
  auto* picker = new QTimeEdit(qtTime(time), this);
  picker->setLocale(QLocale(qt(m_localize.timeLocale())));
  // In a right-to-left window Qt would reverse the sections, which bidirectional text does by itself.
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
  const QString reason = m_problem ? qt(text(*m_problem, m_localize)) : QString();
  markInvalidData(*m_number, reason);
  m_number->setToolTip(reason);
}

void RuleRowView::showUnshownEntries(const QString& text) {
  m_unshownEntries->setText(text);
  m_unshownEntries->setVisible(!text.isEmpty());
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
