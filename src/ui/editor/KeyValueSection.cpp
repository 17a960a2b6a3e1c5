#include "ui/editor/KeyValueSection.h"

#include <QCheckBox>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/base/Const.h"
#include "core/editor/FieldSearch.h"
#include "core/editor/SectionRows.h"
#include "core/editor/ValueTexts.h"
#include "core/text/Bidirectional.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

// Nobody reads more, and creating their widgets would take seconds.
constexpr std::size_t mostShownRows = 300;

QCheckBox* makeBox(const std::string& key, bool isOn) {
  auto* box = new CheckBox(literalTitle(shownText(key)));
  box->setChecked(isOn);
  box->setEnabled(false);
  box->setToolTip(shownToolTip(key));
  box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return box;
}

/// The widget with a margin above it, in pixels.
QWidget* lowered(QWidget* widget, int distance) {
  if (distance <= 0) return widget;
  auto* frame = new QWidget;
  auto* layout = new QVBoxLayout(frame);
  layout->setContentsMargins(0, distance, 0, 0);
  layout->addWidget(widget);
  return frame;
}

int firstLineHeight(const QWidget& widget) {
  return qobject_cast<const QCheckBox*>(&widget) ? widget.sizeHint().height() : widget.fontMetrics().height();
}

}  // namespace

KeyValueSection::KeyValueSection(const Localize& localize, QWidget* parent) : QWidget(parent), m_localize(localize) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
}

void KeyValueSection::setKeyValues(const std::vector<KeyValueItem>& items, Deletable deletable) {
  m_deletable = deletable;
  dropGrid();
  if (items.empty()) return;

  m_grid = new QWidget;
  m_cells = new SectionGrid(m_grid);
  m_cells->setVerticalSpacing(SectionGrid::columnSpacing / 2);
  const bool hasButtons =
      deletable == Deletable::Yes ||
      std::any_of(items.begin(), items.end(), [](const KeyValueItem& item) { return item.isSecret; });
  m_cells->setColumnMinimumWidth(2, hasButtons ? SectionGrid::columnSpacing : 0);
  const std::size_t count = std::min(items.size(), mostShownRows);
  for (std::size_t i = 0; i < count; ++i) addRow(items[i]);
  if (count < items.size()) m_cells->addWidget(new SecondaryLabel(QStringLiteral("…")), m_cells->rowCount(), 1);
  layout()->addWidget(m_grid);
}

void KeyValueSection::dropGrid() {
  m_rows.clear();
  discard(std::exchange(m_grid, nullptr));
}

void KeyValueSection::addRow(const KeyValueItem& item) {
  const int line = m_cells->rowCount();
  Row row{.key = item.key, .cells = {}};
  const auto addCell = [&](QWidget* cell, int column) {
    m_cells->addWidget(cell, line, column, Qt::AlignTop);
    row.cells.push_back(cell);
  };
  QWidget* value = makeValue(item);
  QWidget* button = makeButton(item, *value);
  // Label, value and button are centred on the first line of the value.
  const int height = std::max(firstLineHeight(*value), button ? button->sizeHint().height() : 0);
  if (!item.value.as<bool>()) {
    auto* label = new KeyLabel(item.key, this);
    if (m_deletable == Deletable::No) label->setForegroundRole(QPalette::PlaceholderText);
    addCell(lowered(label, (height - firstLineHeight(*label)) / 2), 0);
  }
  addCell(lowered(value, (height - firstLineHeight(*value)) / 2), 1);
  if (button) addCell(button, 3);
  m_rows.push_back(std::move(row));
}

QWidget* KeyValueSection::makeValue(const KeyValueItem& item) const {
  if (const auto* isOn = item.value.as<bool>()) return makeBox(item.key, *isOn);
  const auto* text = item.value.as<std::string>();
  auto* value =
      new ValueText(item.isSecret ? bullets() : shownText(text ? *text : description(item.value, m_localize)));
  value->setAccessibleName(shownText(item.key));
  return value;
}

/// The button at the end of a row; null if there is none.
QWidget* KeyValueSection::makeButton(const KeyValueItem& item, QWidget& value) {
  if (m_deletable == Deletable::Yes) return makeDeleteButton(item.key);
  auto* const text = item.isSecret ? dynamic_cast<ValueText*>(&value) : nullptr;
  return text ? makeShowButton(item, *text) : nullptr;
}

QPushButton* KeyValueSection::makeSmallButton(const std::string& title, const std::string& key) {
  auto* button = new QPushButton(qt(title));
  QFont font = button->font();
  font.setPointSizeF(font.pointSizeF() * 0.85);
  button->setFont(font);
  button->setAttribute(Qt::WA_MacSmallSize);
  button->setAccessibleName(shownText(bidirectionalString({title, key}, Const::separator, m_localize.isRightToLeft())));
  return button;
}

/// Shows a secret value while it is pressed in.
QWidget* KeyValueSection::makeShowButton(const KeyValueItem& item, ValueText& value) {
  auto* button = makeSmallButton(m_localize.show(), item.key);
  button->setCheckable(true);
  const auto* const text = item.value.as<std::string>();
  connect(button, &QPushButton::toggled, &value, [&value, shown = shownText(text ? *text : std::string())](bool isOn) {
    value.setPlainText(isOn ? shown : bullets());
  });
  return button;
}

QWidget* KeyValueSection::makeDeleteButton(const std::string& key) {
  auto* button = makeSmallButton(m_localize.delete_(), key);
  connect(button, &QPushButton::clicked, this, [this, key] { deleteRow(key); });
  return button;
}

void KeyValueSection::deleteRow(const std::string& key) {
  const QPointer<KeyValueSection> self(this);  // `remove` may replace the rows or delete the section
  if (!remove || !remove(key) || !self) return;
  const auto row = std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& each) { return each.key == key; });
  if (row != m_rows.end()) dropRow(row);
}

void KeyValueSection::dropRow(std::vector<Row>::iterator row) {
  for (QWidget* cell : row->cells) {
    m_cells->removeWidget(cell);
    discard(cell);
  }
  const auto next = m_rows.erase(row);
  if (m_rows.empty()) return dropGrid();
  const Row& neighbour = next == m_rows.end() ? m_rows.back() : *next;
  neighbour.cells.back()->setFocus();
}

KeyLabel::KeyLabel(const std::string& key, QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setFixedWidth(SectionGrid::labelWidth);
  // A label derives its direction from its text. In a right-to-left line the colon belongs to the left of a Latin key.
  const QString text = breakable(shownText(key));
  setText(qt(bidirectionalString({utf8(text)}, {}, isRightToLeft())) + QLatin1Char(':'));
  setAlignment(Qt::AlignTop | Qt::AlignAbsolute | (isRightToLeft() ? Qt::AlignLeft : Qt::AlignRight));
  setAccessibleName(shownText(key));
}

KeysSection::KeysSection(const EditorContext& theContext, StackSection section, KeyValueSection::Deletable deletable)
    : Section(theContext), m_section(section), m_deletable(deletable), m_rows(new KeyValueSection(localize())) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_rows);
  layout->addWidget(makeProblemsView([this](const std::string& key) { return isShown(key); }, KeyNames::Shown));
  m_rows->remove = [this](const std::string& key) { return remove(key); };
}

void KeysSection::fill(const Launchd& launchd) {
  auto rows = rowsOf(launchd.plist());
  if (rows == m_shown) return;
  m_shown = std::move(rows);
  m_rows->setKeyValues(m_shown, m_deletable);
}

bool KeysSection::narrow(const FieldSearch& search) {
  return std::any_of(m_shown.begin(), m_shown.end(),
                     [&search](const KeyValueItem& item) { return search.matches({item.key}); });
}

bool KeysSection::isShown(const std::string& key) const {
  return std::any_of(m_shown.begin(), m_shown.end(), [&key](const KeyValueItem& item) { return item.key == key; });
}

std::vector<KeyValueItem> KeysSection::rowsOf(const jobfile::Plist& plist) const {
  const bool isInEditor = m_deletable == KeyValueSection::Deletable::Yes;
  return (isInEditor ? editorRows : sectionRows)(m_section, plist, context().foundation);
}

bool KeysSection::remove(const std::string& key) {
  Launchd* const job = markJobChanged();
  if (!job) return false;
  const bool isRemoved =
      m_section == StackSection::Unknown ? deleteUnknown(job->plist(), key) : deleteDeprecated(job->plist(), key);
  m_shown = rowsOf(job->plist());
  return isRemoved;
}

}  // namespace mirvel::ui
