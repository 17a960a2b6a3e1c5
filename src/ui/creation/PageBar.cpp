#include "ui/creation/PageBar.h"

#include <QHBoxLayout>
#include <QLabel>

#include "ui/support/QtText.h"

namespace mirvel::ui {

PageBar::PageBar(IconLoader& icons, QWidget* parent) : QWidget(parent), m_icons(icons) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  constexpr int between = 24;
  row->setSpacing(between);
  row->addStretch();
  row->addStretch();
}

void PageBar::addCell() {
  auto* cell = new QHBoxLayout;
  cell->setSpacing(4);
  const Labels labels{new QLabel, new QLabel};
  cell->addWidget(labels.mark);
  cell->addWidget(labels.text);
  auto* const row = static_cast<QHBoxLayout*>(layout());
  row->insertLayout(row->count() - 1, cell);  // between the stretches
  m_cells.push_back(labels);
}

void PageBar::draw(const std::vector<NewController::Cell>& cells) {
  while (m_cells.size() < cells.size()) addCell();
  constexpr int markSize = 16;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const auto& [text, isCurrent] = cells[i];
    QLabel& label = *m_cells[i].text;
    QFont font = this->font();
    font.setBold(true);
    label.setMinimumWidth(QFontMetrics(font).horizontalAdvance(qt(text)));  // the others don't move
    font.setBold(isCurrent);
    label.setFont(font);
    label.setText(qt(text));
    label.setForegroundRole(isCurrent ? QPalette::WindowText : QPalette::PlaceholderText);
    const auto icon = m_icons.icon(Image::named(isCurrent ? "mirvel-available" : "mirvel-none"));
    m_cells[i].mark->setPixmap(icon.pixmap(QSize(markSize, markSize), devicePixelRatioF()));
  }
}

}  // namespace mirvel::ui
