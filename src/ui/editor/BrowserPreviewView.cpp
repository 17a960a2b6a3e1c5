#include "ui/editor/BrowserPreviewView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "core/editor/EditorTexts.h"
#include "core/editor/TableFormat.h"
#include "core/schedule/ScheduledController.h"
#include "core/session/Foundation.h"
#include "ui/editor/EditTableView.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr TableFormat::Column stringColumn[] = {{}};
constexpr TableFormat stringsFormat{.columns = stringColumn};

/// The value as a text to be read and copied.
std::string plainText(const BrowserPreview& preview) {
  if (preview.control != BrowserPreview::Control::Strings) return preview.text;
  std::string lines;
  for (const std::string& line : preview.strings) lines += (lines.empty() ? "" : "\n") + line;
  return lines;
}

}  // namespace

BrowserPreviewView::BrowserPreviewView(Browser& browser, const EditorContext& context, BrowserModel::Access access)
    : m_browser(browser), m_context(context), m_access(access), m_title(new ElidedLabel), m_area(new QScrollArea) {
  m_title->setForegroundRole(QPalette::PlaceholderText);
  m_area->setWidgetResizable(true);
  m_area->setFrameShape(QFrame::NoFrame);
  m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_area->setFocusPolicy(Qt::NoFocus);  // only its control gets the focus
  m_area->viewport()->setAutoFillBackground(false);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_title);
  layout->addWidget(m_area, 1);
}

BrowserPreviewView::~BrowserPreviewView() {
  changed = nullptr;
  left = nullptr;
  if (m_strings) m_strings->changed = nullptr;
}

void BrowserPreviewView::setPreview(const std::optional<BrowserPreview>& preview) {
  setVisible(preview.has_value());
  const bool isMade = preview && isMadeFor(*preview);
  m_shown = preview;
  if (!isMade) make();
  if (m_shown) fill();
}

bool BrowserPreviewView::isMadeFor(const BrowserPreview& preview) const {
  return m_shown && m_shown->item == preview.item && m_shown->name == preview.name &&
         m_shown->control == preview.control;
}

void BrowserPreviewView::make() {
  discard(m_area->takeWidget());
  m_control = nullptr;
  m_box = nullptr;
  m_text = nullptr;
  m_strings = nullptr;
  m_description = nullptr;
  if (!m_shown) return;
  auto* const body = new QWidget;
  auto* const layout = new QVBoxLayout(body);
  layout->setContentsMargins(0, 0, 0, 0);
  const bool isEditable = m_access == BrowserModel::Access::Editable;
  if (!isEditable || m_shown->control == BrowserPreview::Control::Description) {
    makeReadOnly(*layout);
  } else if (m_shown->control == BrowserPreview::Control::Box) {
    makeBox(*layout);
  } else if (m_shown->control == BrowserPreview::Control::Strings) {
    makeStrings(*layout);
  } else {
    makeText(*layout);
  }
  layout->addStretch();
  m_control->setAccessibleName(qt(m_shown->name));
  m_title->setFullText(qt(m_shown->name));
  m_area->setWidget(body);
  body->setAutoFillBackground(false);
  updateGeometry();
}

void BrowserPreviewView::makeReadOnly(QVBoxLayout& layout) {
  m_description = new ValueText({});
  m_description->installEventFilter(this);
  m_control = m_description;
  layout.addWidget(m_description);
}

void BrowserPreviewView::makeBox(QVBoxLayout& layout) {
  m_box = new CheckBox;
  m_box->installEventFilter(this);
  m_control = m_box;
  layout.addWidget(m_box, 0, Qt::AlignLeading);
  connect(m_box, &QCheckBox::stateChanged, this, [this, item = m_shown->item](int state) {
    if (m_isFilling || state == Qt::PartiallyChecked) return;
    m_browser.setOn(item, state == Qt::Checked);
    wasChanged();
  });
}

void BrowserPreviewView::makeText(QVBoxLayout& layout) {
  m_text = new QLineEdit;
  if (m_shown->choices.empty()) {
    m_control = m_text;
    layout.addWidget(m_text);
  } else {
    makeChoices(layout, *m_text);
  }
  m_text->setMaxLength(std::numeric_limits<int>::max());  // otherwise a long text would be truncated
  m_text->setAccessibleName(qt(m_shown->name));
  m_text->installEventFilter(this);
  connect(m_text, &QLineEdit::textChanged, this, [this](const QString& text) { enter(text); });
}

void BrowserPreviewView::makeChoices(QVBoxLayout& layout, QLineEdit& text) {
  auto* const popUp = new QComboBox;
  popUp->setEditable(true);
  popUp->setLineEdit(&text);
  popUp->setInsertPolicy(QComboBox::NoInsert);
  popUp->setCompleter(nullptr);  // it would replace what is typed
  popUp->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  for (const std::string_view choice : m_shown->choices) popUp->addItem(qt(choice));
  popUp->setCurrentIndex(-1);
  guardFromWheel(*popUp);
  popUp->installEventFilter(this);  // it has the focus in place of its text
  m_control = popUp;
  layout.addWidget(popUp);
}

void BrowserPreviewView::makeStrings(QVBoxLayout& layout) {
  m_strings = new EditTableView(m_context.foundation, m_context.platform, m_context.schedules.numbers(), stringsFormat,
                                m_shown->name);
  m_control = m_strings;
  layout.addWidget(m_strings);
  m_strings->changed = [this, table = m_strings, item = m_shown->item](Editing::Step step, const std::string&) {
    std::vector<std::string> strings;
    fromRows(writtenRows(stringsFormat, table->rows(), m_context.schedules.numbers()), strings);
    m_browser.setStrings(item, std::move(strings), step);
    wasChanged();
  };
}

void BrowserPreviewView::enter(const QString& text) {
  if (m_isFilling) return;
  m_browser.enterText(m_shown->item, utf8(text));
  wasChanged();
}

void BrowserPreviewView::wasChanged() {
  if (changed) changed();
}

void BrowserPreviewView::fill() {
  m_isFilling = true;
  if (m_box) {
    m_box->setTristate(!m_shown->isOn);
    m_box->setCheckState(!m_shown->isOn ? Qt::PartiallyChecked : *m_shown->isOn ? Qt::Checked : Qt::Unchecked);
    m_box->setText(qt(m_shown->isOn ? m_shown->text : EditorTexts(m_context.foundation.localize).noValue()));
  }
  if (m_text) fillText();
  if (m_strings) m_strings->fill(rowsOf(m_shown->strings));
  if (m_description) replaceText(*m_description, shownText(plainText(*m_shown)));
  m_isFilling = false;
  mark();
}

void BrowserPreviewView::fillText() {
  if (m_browser.matchesValue(m_shown->item, utf8(m_text->text()))) return;
  replaceText(*m_text, qt(m_shown->text));
  m_original = m_text->text();
}

/// Shows why the value can't be saved, in place of the help.
void BrowserPreviewView::mark() {
  if (!m_shown || !m_control) return;
  QWidget& input = m_text ? static_cast<QWidget&>(*m_text) : *m_control;
  if (m_text) markInvalidData(input, m_shown->problem ? qt(*m_shown->problem) : QString());
  if (m_shown->problem) {
    input.setToolTip(shownToolTip(*m_shown->problem));
    input.setAccessibleDescription(qt(*m_shown->problem));
  } else {
    setHelp(input, m_shown->help);
  }
}

void BrowserPreviewView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) mark();
}

void BrowserPreviewView::setHeaderHeight(int height) {
  m_title->setFixedHeight(height);
}

QSize BrowserPreviewView::minimumSizeHint() const {
  const QWidget* const body = m_area->widget();
  const int bar = m_area->verticalScrollBar()->maximum() > 0 ? m_area->verticalScrollBar()->sizeHint().width() : 0;
  return {std::max(fontMetrics().averageCharWidth() * 18, body ? body->minimumSizeHint().width() + bar : 0),
          m_title->height()};
}

bool BrowserPreviewView::eventFilter(QObject* watched, QEvent* event) {
  if (m_text && event->type() == QEvent::FocusIn) m_original = m_text->text();
  const bool isOverride = event->type() == QEvent::ShortcutOverride;
  if (event->type() != QEvent::KeyPress && !isOverride) return QWidget::eventFilter(watched, event);
  const auto& press = static_cast<const QKeyEvent&>(*event);
  const bool isPlain = (press.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (!isPlain || !pressed(press.key(), isOverride)) return QWidget::eventFilter(watched, event);
  event->accept();
  return true;
}

/// Handles a key, or reports that it will.
bool BrowserPreviewView::pressed(int key, bool isOverride) {
  const bool isBack = !m_text && key == (isRightToLeft() ? Qt::Key_Right : Qt::Key_Left);
  const bool isRestoring = m_text && key == Qt::Key_Escape && m_text->text() != m_original;
  if (key != Qt::Key_Return && key != Qt::Key_Enter && !isBack && !isRestoring) return false;
  if (isOverride) return true;
  if (isRestoring) m_text->setText(m_original);
  if (left) left();
  return true;
}

}  // namespace mirvel::ui
