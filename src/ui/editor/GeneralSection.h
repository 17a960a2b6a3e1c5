#pragma once

#include "ui/editor/Section.h"
#include "ui/support/IconLoader.h"

class QCheckBox;

namespace mirvel::ui {

class SectionGrid;

/// Who a job is: what both forms of the section share.
class GeneralSection : public Section {
 protected:
  GeneralSection(Program& program, IconLoader& icons);

  QPixmap pixmapOf(const std::optional<Image>& icon) const;

  IconLoader& m_icons;
  SectionGrid* m_grid;
  QCheckBox* m_enabledButton;
};

}  // namespace mirvel::ui
