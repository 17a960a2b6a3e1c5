#include "ui/editor/GeneralSection.h"

#include "ui/editor/SectionGrid.h"
#include "ui/support/CheckBox.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

GeneralSection::GeneralSection(Program& theProgram, IconLoader& icons)
    : Section(theProgram),
      m_icons(icons),
      m_grid(new SectionGrid(this)),
      m_enabledButton(new CheckBox(qt(localize().enabled()))) {}

QPixmap GeneralSection::pixmapOf(const std::optional<Image>& icon) const {
  const QSize size(SectionGrid::iconSide, SectionGrid::iconSide);
  return icon ? m_icons.icon(*icon).pixmap(size, devicePixelRatioF()) : QPixmap();
}

}  // namespace mirvel::ui
