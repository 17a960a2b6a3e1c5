#include "ui/editor/DetailPane.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "core/editor/DetailTab.h"
#include "ui/support/QtText.h"
#include "ui/support/SecondaryLabel.h"
#include "ui/support/ShownText.h"
#include "ui/support/ValueText.h"

namespace mirvel::ui {

namespace {

QFont scaled(QFont font, double factor) {
  font.setPointSizeF(font.pointSizeF() * factor);
  return font;
}

ValueText* valueWidget(const JobDetails::Row& row) {
  QStringList lines;
  for (const std::string& line : row.lines) lines.append(shownText(line));
  auto* value = new ValueText(lines.join(QLatin1Char('\n')));
  if (row.style == JobDetails::Row::Style::Code) value->setCode();
  value->setAccessibleName(qt(row.label));
  return value;
}

/// A label before a value, their first lines on one baseline.
void addRow(QGridLayout& rows, const JobDetails::Row& row) {
  ValueText* value = valueWidget(row);
  auto* label = new SecondaryLabel(qt(row.label));
  label->setBuddy(value);
  const int difference = label->fontMetrics().ascent() - value->fontMetrics().ascent();
  label->setContentsMargins(0, std::max(0, -difference), 0, 0);
  const int line = rows.rowCount();
  rows.addWidget(label, line, 0, Qt::AlignTrailing | Qt::AlignTop);
  rows.addWidget(value, line, 1, Qt::AlignTop);
}

}  // namespace

DetailPane::DetailPane(Program& program, IconLoader& icons, QWidget* parent)
    : QWidget(parent),
      m_program(program),
      m_icons(icons),
      m_pages(new QStackedWidget(this)),
      m_noSelection(new SecondaryLabel(qt(program.foundation.localize.noSelection()))),
      m_details(new QScrollArea) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_pages);
  m_noSelection->setAlignment(Qt::AlignCenter);
  m_noSelection->setFont(scaled(m_noSelection->font(), 1.5));
  m_details->setWidgetResizable(true);
  m_details->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_details->setFrameShape(QFrame::NoFrame);
  m_details->setFocusPolicy(Qt::NoFocus);  // the texts in it take the keys
  m_details->setAccessibleName(qt(program.foundation.localize.details()));
  m_pages->addWidget(m_noSelection);
  m_pages->addWidget(m_details);
  m_program.shell.detail = this;
  setAccessibleName(qt(program.foundation.localize.details()));
}

DetailPane::~DetailPane() {
  m_program.shell.detail = nullptr;
}

void DetailPane::clearDetail() {
  m_pages->setCurrentWidget(m_noSelection);
}

void DetailPane::updateIcon() {
  m_shown.reset();  // another picture may have the same name
  updateDetail();
}

DetailTab DetailPane::detailTab() const {
  constexpr bool isEdited = false;
  return detailTabFor(m_program.state.selectedJob.get(), isEdited);
}

void DetailPane::updateDetail() {
  const auto& job = m_program.state.selectedJob;
  if (!job) {
    clearDetail();
    return;
  }
  auto details = JobDetails::of(m_program, *job);
  // What stays as it is keeps its place, and the text that is being copied its mark.
  if (m_shown != details) {
    m_details->setWidget(makeDetails(details));
    m_shown = std::move(details);
  }
  m_pages->setCurrentWidget(m_details);
}

QWidget* DetailPane::makeDetails(const JobDetails& details) {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  const int margin = style()->pixelMetric(QStyle::PM_LayoutLeftMargin) * 2;
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->setSpacing(margin);
  layout->addWidget(makeHeader(details));

  auto* rows = new QGridLayout;
  rows->setVerticalSpacing(margin / 2);
  rows->setHorizontalSpacing(margin / 2);
  rows->setColumnStretch(1, 1);
  for (const JobDetails::Row& row : details.rows) addRow(*rows, row);
  layout->addLayout(rows);
  layout->addWidget(makeFooter());
  layout->addStretch();
  return page;
}

QWidget* DetailPane::makeHeader(const JobDetails& details) {
  auto* header = new QWidget;
  auto* layout = new QHBoxLayout(header);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(style()->pixelMetric(QStyle::PM_LayoutLeftMargin));

  auto* icon = new QLabel;
  const int side = style()->pixelMetric(QStyle::PM_LargeIconSize) * 3 / 2;
  if (details.icon) icon->setPixmap(m_icons.icon(*details.icon).pixmap(QSize(side, side), devicePixelRatioF()));
  icon->setAccessibleName(qt(details.kind));
  layout->addWidget(icon, 0, Qt::AlignTop);

  auto* texts = new QVBoxLayout;
  auto* name = new ValueText(shownText(details.name));
  QFont bold = scaled(name->font(), 1.35);
  bold.setBold(true);
  name->setTextFont(bold);
  name->setAccessibleName(qt(m_program.foundation.localize.name()));
  texts->addWidget(name);
  auto* second = new QHBoxLayout;
  auto* status = new QLabel;
  const int small = style()->pixelMetric(QStyle::PM_SmallIconSize);
  status->setPixmap(m_icons.icon(details.status).pixmap(QSize(small, small), devicePixelRatioF()));
  status->setAccessibleName(qt(details.status.accessibilityDescription));
  second->addWidget(status, 0, Qt::AlignTop);
  auto* kind =
      new SecondaryLabel(qt(details.status.accessibilityDescription) + QStringLiteral(" · ") + qt(details.kind));
  kind->setWordWrap(true);
  second->addWidget(kind, 1);
  texts->addLayout(second);
  layout->addLayout(texts, 1);
  return header;
}

QWidget* DetailPane::makeFooter() {
  auto* footer = new QWidget;
  auto* layout = new QHBoxLayout(footer);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* reveal = new QPushButton(qt(m_program.foundation.localize.revealInFinder()));
  connect(reveal, &QPushButton::clicked, this, [this] { m_program.menus.perform(Command::revealInFinder); });
  layout->addWidget(reveal);
  layout->addStretch();
  return footer;
}

}  // namespace mirvel::ui
